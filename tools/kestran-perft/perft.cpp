#include "kestran-perft/perft.h"

#include "base/clock.h"
#include "base/cppIoUtils.h"
#include "board/makeMove.h"
#include "notation/longAlgebraicMove.h"
#include "search/infoStruct.h"
#include "support/cli.h"
#include "support/gameInput.h"
#include "support/json.h"
#include "support/terminal.h"
#include "support/uciLines.h"

#include <iostream>
#include <optional>
#include <utility>
#include <vector>

namespace {

// The number of sequences of 13 moves from the start position nearly fills 64 bits.
constexpr int MAX_PERFT_DEPTH = 12;
constexpr std::size_t FEN_FIELDS = 6;

struct PerftOptions {
    std::vector<std::string> words; // a position and a depth, or with a file only a depth
    std::optional<std::string> moves;
    std::optional<std::string> path;
    bool asJson = false;
};

// A depth text of a command line or a file.
int readDepth(const std::string& text, const std::string& what) {
    return parseNumber(text, what, 0, MAX_PERFT_DEPTH);
}

// Ends a report with the nodes and the speed.
void printTotal(std::int64_t nodes, Milliseconds elapsed, Json* report) {
    const std::int64_t rate = nodesPerSecond(nodes, elapsed);
    if (report != nullptr) {
        report->update({{"nodes", nodes}, {"millis", elapsed}, {"nodesPerSecond", rate}});
        printJson(*report, std::cout);
    } else {
        std::cout << "Nodes: " << nodes << "\nTime: " << elapsed
                  << " ms\nNodes per second: " << rate << '\n';
    }
}

// Counts the sequences after each first move, and prints them or adds them to `report`.
std::int64_t split(Position& position, int depth, Json* report) {
    MoveArray moves;
    const int count = generateLegalMoves(position, moves);
    Progress progress;
    std::int64_t nodes = 0;
    DoMoveContext context;
    for (int i = 0; i < count; ++i) {
        const Move& move = moves[i];
        const std::string name = LongAlgebraicMove(move).toString();
        progress.show(name + ", move " + std::to_string(i + 1) + " of " + std::to_string(count));
        playMove(position, move, context);
        const std::int64_t share = perft(position, depth - 1);
        undoMove(position, move, context);
        progress.show("");
        if (report != nullptr) {
            (*report)["moves"][name] = share;
        } else {
            std::cout << name << ": " << share << std::endl;
        }
        nodes += share;
    }
    return nodes;
}

// What a file says that a position counts.
struct ExpectedCount {
    int depth;
    std::int64_t sequences;
};

std::string placeOf(const EpdRecord& record) {
    return "line " + std::to_string(record.line);
}

// Passes over operations that are no counts, such as names, and counts of more plies than `most`.
std::vector<ExpectedCount> readCounts(const EpdRecord& record, int most) {
    std::vector<ExpectedCount> counts;
    for (const std::string& operation : record.operations) {
        const std::vector<std::string> words = splitString(operation);
        if (!matchForm(words.front(), "D#*")) {
            continue;
        }
        const auto count = words.size() == 2 ? matchForm(words[1], "#") : std::nullopt;
        if (!count) {
            throw UsageError(placeOf(record) + " has no count after " + words.front());
        }
        const int depth =
            readDepth(words.front().substr(1), placeOf(record) + ": the depth after D");
        if (depth <= most) {
            counts.push_back({depth, count->numbers.front()});
        }
    }
    return counts;
}

using CountedPosition = std::pair<EpdRecord, std::vector<ExpectedCount>>; // at least one count

// The positions of a file with their counts of at most `depth` plies. Those without any
// are left out.
std::vector<CountedPosition> readCountedPositions(const std::string& path, int depth) {
    std::vector<CountedPosition> positions;
    for (const EpdRecord& record : readEpdFile(path)) {
        if (const auto counts = readCounts(record, depth); !counts.empty()) {
            positions.emplace_back(record, counts);
        }
    }
    if (positions.empty()) {
        throw UsageError("the file " + path + " has no count, such as \";D3 8902\", of at most " +
                         std::to_string(depth) + " plies");
    }
    return positions;
}

// The result of the check of a file so far.
struct CheckTally {
    std::int64_t nodes = 0;
    int counted = 0;
    int wrong = 0;
};

// Checks the counts of a position, and prints a line about it or adds it to `report`.
void checkPosition(const CountedPosition& counted, CheckTally& tally, Progress& progress,
                   Json* report) {
    const EpdRecord& record = counted.first;
    Position position = record.position;
    std::string faults;
    Json counts = Json::array();
    for (const auto& [depth, sequences] : counted.second) {
        const std::string name = std::string("D").append(std::to_string(depth));
        progress.show(placeOf(record) + ", " + name + ", " + std::to_string(tally.counted) +
                      " counts done, " + std::to_string(tally.wrong) + " wrong");
        const std::int64_t found = perft(position, depth);
        tally.nodes += found;
        ++tally.counted;
        counts.push_back({{"depth", depth}, {"expected", sequences}, {"found", found}});
        if (found != sequences) {
            ++tally.wrong;
            faults +=
                ", " + name + " is " + std::to_string(found) + ", not " + std::to_string(sequences);
        }
    }
    progress.show("");
    if (report != nullptr) {
        (*report)["positions"].push_back(
            {{"line", record.line}, {"fen", record.fen}, {"counts", counts}});
    } else {
        std::cout << (faults.empty() ? "ok     " : "WRONG  ") << placeOf(record) << faults << ": "
                  << record.fen << std::endl;
    }
}

// Whether all counts of the file are right.
bool checkCounts(const std::string& path, int depth, Json* report) {
    const std::vector<CountedPosition> positions = readCountedPositions(path, depth);
    const Milliseconds start = clockMilliseconds();
    Progress progress;
    CheckTally tally;
    for (const CountedPosition& position : positions) {
        checkPosition(position, tally, progress, report);
    }
    if (report != nullptr) {
        report->update({{"checked", tally.counted}, {"wrong", tally.wrong}});
    } else {
        std::cout << "Positions: " << positions.size() << '\n'
                  << "Counts: " << tally.counted << ", wrong: " << tally.wrong << '\n';
    }
    printTotal(tally.nodes, clockMilliseconds() - start, report);
    return tally.wrong == 0;
}

// The depth after the words of a position; takes it out.
int takeDepth(std::vector<std::string>& words) {
    if (words.size() == FEN_FIELDS && splitString(joined(words)).size() == FEN_FIELDS) {
        throw UsageError("a depth is needed after the six fields of a position; put a position of "
                         "five fields in quotes");
    }
    if (words.size() < 2) {
        throw UsageError("a position and a depth are needed");
    }
    const int depth = readDepth(words.back(), "the depth");
    words.pop_back();
    return depth;
}

int runPerft(const PerftOptions& options) {
    Json json = {{"schema", 1}};
    Json* report = options.asJson ? &json : nullptr;
    std::vector<std::string> words = options.words;
    if (options.path) {
        if (words.size() > 1) {
            throw UsageError("--epd takes only a file and a depth");
        }
        const int depth = words.empty() ? MAX_PERFT_DEPTH : readDepth(words.front(), "the depth");
        return checkCounts(*options.path, depth, report) ? 0 : 1;
    }
    const int depth = takeDepth(words);
    const NumberedGame game = readGame(words, options.moves.value_or(""));
    Position position = game.position;
    json.update({{"fen", getWholeFen(game)}, {"depth", depth}, {"moves", Json::object()}});

    const Milliseconds start = clockMilliseconds();
    const std::int64_t nodes = depth == 0 ? 1 : split(position, depth, report);
    printTotal(nodes, clockMilliseconds() - start, report);
    return 0;
}

} // namespace

std::int64_t perft(Position& position, int depth) {
    if (depth == 0) {
        return 1;
    }
    MoveArray moves;
    const int count = generateLegalMoves(position, moves);
    std::int64_t nodes = 0;
    DoMoveContext context;
    for (int i = 0; i < count; ++i) {
        const Move& move = moves[i];
        playMove(position, move, context);
        nodes += perft(position, depth - 1);
        undoMove(position, move, context);
    }
    return nodes;
}

int perftMain(int argc, const char* const* argv) {
    PerftOptions options;
    Program program("kestran-perft", "[OPTION]... FEN DEPTH\n[OPTION]... --epd FILE [DEPTH]",
                    "Counts the sequences of DEPTH legal moves, 0 to " +
                        std::to_string(MAX_PERFT_DEPTH) +
                        ", from a position: after each first move, and in all.",
                    "a count of FILE is wrong, or the output cannot be written");
    program.addWords("FEN", options.words,
                     "the position, in quotes or as several words; \"startpos\" is the start "
                     "position. DEPTH follows it");
    auto* const moves = program.addText("--moves", options.moves, "MOVES", MOVES_HELP);
    program
        .addText("--epd", options.path, "FILE",
                 "check the counts of a file instead: one position per line, its FEN and then its "
                 "counts, as in \";D1 20 ;D2 400\"; those of more than DEPTH plies are left out")
        ->excludes(moves);
    program.add_flag("--json", options.asJson, "print one JSON object instead of text");
    return program.run(argc, argv, [&] { return runPerft(options); });
}
