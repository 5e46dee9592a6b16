// Runs the search that plays and its plain twin side by side.
#pragma once

#include "search/playingSearch.h"

#include <map>
#include <sstream>
#include <string>
#include <vector>

struct SearchCase {
    std::string fen;
    std::vector<std::string> moves; // of the game, from there on
    plain::Settings settings;
    std::int64_t stopFrom = 0;    // moves after which a poll says that the time is up
    std::int64_t maxNodes = 1500; // moves after which no further pass begins
    int maxPasses = 60;
    int lines = 1;
    bool isTwice = false; // search again after another move, with the table as it is
};

inline std::string describe(const SearchCase& example) {
    std::ostringstream text;
    text << "fen " << example.fen << "\nmoves";
    for (const std::string& move : example.moves) {
        text << ' ' << move;
    }
    const plain::Settings& settings = example.settings;
    text << "\ntableSize " << settings.tableSize << " useTable " << settings.useTable
         << " standPat " << settings.standPat << " quiscenceMaxDepth " << settings.quiscenceMaxDepth
         << " quiscenceDeltaWindow " << settings.quiscenceDeltaWindow << "\nstopFrom "
         << example.stopFrom << " maxNodes " << example.maxNodes << " maxPasses "
         << example.maxPasses << " lines " << example.lines << " isTwice " << example.isTwice
         << '\n';
    return text.str();
}

// The difference of two outcomes, the playing one's first, or an empty text.
inline std::string findDifference(const plain::Outcome& playing, const plain::Outcome& twin) {
    std::ostringstream text;
    const auto compare = [&text](const char* name, const auto& a, const auto& b) {
        if (a != b) {
            text << name << ": " << a << " / " << b << '\n';
        }
    };
    compare("depth", playing.depth, twin.depth);
    compare("line number", playing.lineNumber, twin.lineNumber);
    compare("abandoned", playing.isAbandoned, twin.isAbandoned);
    compare("result", playing.result, twin.result);
    compare("score", playing.score, twin.score);
    compare("line", playing.line, twin.line);
    compare("alfa", playing.alfa, twin.alfa);
    compare("beta", playing.beta, twin.beta);
    compare("nodes", playing.nodes, twin.nodes);
    compare("tree nodes", playing.treeNodes, twin.treeNodes);
    compare("clashes", playing.clashes, twin.clashes);
    for (std::size_t kind = 0; kind < twin.statistics.size(); ++kind) {
        for (std::size_t ply = 0; ply < twin.statistics[kind].size(); ++ply) {
            const std::string name =
                "statistic " + std::to_string(kind) + " at ply " + std::to_string(ply);
            compare(name.c_str(), playing.statistics[kind][ply], twin.statistics[kind][ply]);
        }
    }
    compare("slots", playing.table.size(), twin.table.size());
    const auto [a, b] = std::ranges::mismatch(playing.table, twin.table);
    if (a != playing.table.end() && b != twin.table.end()) {
        const std::string slot = "slot " + std::to_string(a - playing.table.begin()) + ' ';
        compare((slot + "check").c_str(), a->check, b->check);
        compare((slot + "state").c_str(), a->state, b->state);
        compare((slot + "evaluation").c_str(), a->evaluation, b->evaluation);
        compare((slot + "move").c_str(), a->move, b->move);
        compare((slot + "depth").c_str(), a->depth, b->depth);
    }
    return text.str();
}

class SearchComparison {
public:
    // Runs a case. Returns the difference of the searches, with all that is needed to see it
    // again, or an empty text.
    std::string run(const SearchCase& example) {
        const std::string difference = runAll(example);
        return difference.empty() ? "" : difference + describe(example);
    }

    std::map<std::string, int> seen; // passes by what they came to, and by some of their lines

private:
    std::string runAll(const SearchCase& example) {
        plain::Position root(example.fen);
        std::vector<std::uint64_t> keys = {keyOf(root)};
        PlayingSearch& playing = ++runs % 2 == 0 ? counting : notCounting;
        playing.make(example.settings, example.fen);
        plain::Search twin(example.settings);
        // Plays the first move that is legal and has the text, or any text.
        const auto play = [&](const std::string& text) {
            for (const plain::Move& move : root.moves()) {
                const auto after = root.play(move);
                if (after && (text.empty() || move.text() == text)) {
                    root = *after;
                    keys.push_back(keyOf(root));
                    return playing.play(move.text());
                }
            }
            return false;
        };
        for (const std::string& text : example.moves) {
            if (!play(text)) {
                return "only one of the two can play " + text + '\n';
            }
        }
        const std::string difference = search(example, playing, twin, root, keys);
        if (!difference.empty() || !example.isTwice || !play("")) {
            return difference;
        }
        return search(example, playing, twin, root, keys);
    }

    std::string search(const SearchCase& example, PlayingSearch& playing, plain::Search& twin,
                       const plain::Position& root, const std::vector<std::uint64_t>& keys) {
        twin.begin(root, keys, example.lines);
        twin.isToStop = example.stopFrom <= 0;
        std::string difference;
        int passes = 0;
        bool goesOn = true;
        playing.search(example.lines, twin.isToStop, [&](const plain::Outcome& outcome) {
            if (twin.isOver) {
                difference = "only the playing search goes on\n";
                return false;
            }
            plain::Outcome expected = twin.pass(root);
            if (!playing.isCounting) {
                expected.statistics = {};
            }
            difference = findDifference(outcome, expected);
            if (!difference.empty()) {
                difference = "pass " + std::to_string(passes + 1) + " of depth " +
                             std::to_string(expected.depth) + ", the playing search first\n" +
                             difference;
                return false;
            }
            note(outcome);
            if (outcome.nodes >= example.stopFrom) {
                playing.stop();
                twin.isToStop = true;
            }
            ++passes;
            goesOn = passes < example.maxPasses && outcome.nodes <= example.maxNodes &&
                     (outcome.nodes > 0 || passes < 3);
            return goesOn;
        });
        return !difference.empty() || !goesOn || twin.isOver ? difference
                                                             : "only the twin goes on\n";
    }

    void note(const plain::Outcome& outcome) {
        ++seen[outcome.isAbandoned ? "abandoned" : outcome.result];
        if (outcome.lineNumber > 1) {
            ++seen["later " + outcome.result];
        }
        seen["no line"] += outcome.line.empty() ? 1 : 0;
        seen["full line"] += std::ranges::count(outcome.line, ' ') == 20 ? 1 : 0;
        seen["line from the table"] += outcome.line.find("h ") != std::string::npos ? 1 : 0;
    }

    // Cases go to the two in turn.
    PlayingSearch counting{true};
    PlayingSearch notCounting{false};
    int runs = 0;
};
