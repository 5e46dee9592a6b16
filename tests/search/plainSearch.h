// The search once more, written for plainness alone: the twin that the search that plays
// is held against, pass by pass. It knows neither the book nor the clock.
#pragma once

#include "search/plainEvaluation.h"
#include "search/plainRepetitions.h"

#include <map>

namespace plain {

// The scale of scores.
inline constexpr int MATED = -2147483448;
inline constexpr int MATE_LIMIT = 2147483298;
inline constexpr int FULL_WINDOW = 2147483548;

constexpr int outward(int score) {
    return score > MATE_LIMIT ? score + 1 : score < -MATE_LIMIT ? score - 1 : score;
}
constexpr int inward(int score) {
    return score > MATE_LIMIT ? score - 1 : score < -MATE_LIMIT ? score + 1 : score;
}

struct Settings {
    int tableSize = 1000; // slots
    bool useTable = true;
    bool standPat = true;
    int quiscenceMaxDepth = 10;
    int quiscenceDeltaWindow = 2000;
};

// One slot of the table.
struct Slot {
    int check = 0;    // top 16 bits of the key
    char state = 'F'; // F free, L fail low, H fail high, N no fail
    int evaluation = 0;
    int move = 0; // as a code
    int depth = 0;
    bool operator==(const Slot&) const = default;
};

// Counters by kind, as the engine numbers them, and depth.
using Statistics = std::array<std::array<std::int64_t, 40>, 6>;

// The observable state of a search after a pass.
struct Outcome {
    int depth = 0;
    int lineNumber = 1; // of several lines
    bool isAbandoned = false;
    std::string result; // of the pass, as its name; like alfa and beta not of an abandoned one
    int score = 0;
    std::string line; // in the order of play; see LineMove::text()
    int alfa = 0;     // window of the next pass
    int beta = 0;
    std::int64_t nodes = 0; // since the search began, and so the next one
    std::int64_t treeNodes = 0;
    std::int64_t clashes = 0;   // since the table was made
    Statistics statistics = {}; // of this pass
    std::vector<Slot> table;
};

struct LineMove {
    Move move;
    std::string flag; // q from quiescence, h from the table, or empty

    std::string text() const {
        return move.text() + ':' + std::to_string(move.piece) + std::to_string(move.captured) +
               std::to_string(move.flag) + flag + ' ';
    }
};

struct Line {
    std::vector<LineMove> moves; // in the order of play, 20 at most
    int score = 0;

    // Becomes a move and the line after it.
    void set(const LineMove& move, const Line& rest) {
        moves = rest.moves;
        moves.insert(moves.begin(), move);
        moves.resize(std::min<std::size_t>(moves.size(), 20), move);
    }
};

class Search {
public:
    explicit Search(const Settings& _settings)
        : settings(_settings), table(at(_settings.tableSize)) {
        settings.quiscenceMaxDepth = std::min(settings.quiscenceMaxDepth, 30);
    }

    bool isToStop = false; // what a poll answers
    bool isOver = false;   // whether no pass is left

    // Begins a search for some lines. `keys` are those of the game, with that of the root.
    void begin(const Position& root, const std::vector<std::uint64_t>& keys, int lines) {
        repetitions = {};
        for (const std::uint64_t key : keys) {
            countRepetitions(key);
        }
        std::ranges::for_each(table, [](Slot& slot) { slot.state = 'F'; });
        counts.clear();
        killers = {};
        const auto isLegal = [&](const Move& move) { return root.play(move).has_value(); };
        const auto legal = std::ranges::count_if(root.moves(), isLegal);
        rootLines.assign(at(std::clamp(static_cast<int>(legal), 1, lines)), {});
        number = 0;
        passDepth = 1;
        isOver = false;
        nodes = treeNodes = sincePoll = 0;
    }

    // The next pass. It leaves out the root moves that the lines before its own begin with.
    Outcome pass(const Position& root) {
        Outcome outcome;
        outcome.depth = passDepth;
        outcome.lineNumber = static_cast<int>(number) + 1;
        auto& [mainLine, firstAlfa, firstBeta] = rootLines[number];
        if (settings.useTable && rootLines.size() > 1) {
            store(root, mainLine, passDepth - 1, -FULL_WINDOW, FULL_WINDOW);
        }
        statistics = {};
        try {
            searchTree(root, mainLine, firstAlfa, firstBeta, 0);
            if (settings.useTable) {
                store(root, mainLine, passDepth, firstAlfa, firstBeta);
            }
            if (!mainLine.moves.empty() && mainLine.moves.back().flag == "h") {
                completeLine(mainLine, root);
            }
            outcome.result = judge(rootLines[number]);
            outcome.alfa = firstAlfa;
            outcome.beta = firstBeta;
        } catch (const Abandoned&) {
            outcome.isAbandoned = true;
            mainLine = {{}, firstBeta};
        }
        outcome.score = mainLine.score;
        for (const LineMove& move : mainLine.moves) {
            outcome.line += move.text();
        }
        outcome.nodes = nodes;
        outcome.treeNodes = treeNodes;
        outcome.clashes = clashes;
        outcome.statistics = statistics;
        outcome.table = table;
        advance(outcome.result);
        return outcome;
    }

private:
    struct Abandoned {}; // thrown by a poll: no frame does anything more

    struct RootLine {
        Line line;               // of the last pass
        int alfa = -FULL_WINDOW; // window of the next pass
        int beta = FULL_WINDOW;
    };

    // Judges the pass, and sets the window of the next one.
    static std::string judge(RootLine& line) {
        auto& [mainLine, firstAlfa, firstBeta] = line;
        const int score = mainLine.score;
        if (score < -MATE_LIMIT || score > MATE_LIMIT) {
            return "OK_FINISH";
        }
        if (score <= firstAlfa) {
            firstBeta = firstAlfa + 1;
            firstAlfa = -FULL_WINDOW;
            return "FAILLOW";
        }
        if (score >= firstBeta) {
            firstAlfa = firstBeta - 1;
            firstBeta = FULL_WINDOW;
            return "FAILHIGH";
        }
        firstAlfa = score - 550;
        firstBeta = score + 550;
        return "OK";
    }

    // A line without a move ends a depth, and a depth of nothing but mates the search.
    void advance(const std::string& result) {
        if (!result.starts_with("OK")) {
            isOver = result.empty(); // abandoned; a failed pass is repeated
            return;
        }
        isSettled = (number == 0 || isSettled) && result == "OK_FINISH";
        if (++number == rootLines.size() || rootLines[number - 1].line.moves.empty()) {
            isOver = isSettled || passDepth == 20;
            number = 0;
            ++passDepth;
        }
    }

    void completeLine(Line& line, Position position) {
        for (const LineMove& move : line.moves) {
            position = *position.play(move.move);
        }
        while (static_cast<int>(line.moves.size()) < passDepth) {
            const int code = read(position).first.move;
            const std::vector<Move> moves = position.moves();
            const auto move = std::ranges::find(moves, code, codeOf);
            const auto after = move == moves.end() ? std::nullopt : position.play(*move);
            if (!after) {
                return;
            }
            line.moves.push_back({*move, "h"});
            position = *after;
        }
    }

    // ---- The tree ----

    void searchTree(const Position& position, Line& line, int alfa, int beta, int depth) {
        if (position.clock >= 100) {
            line = {{}, 0};
            return;
        }
        const int originalAlfa = alfa;
        std::vector<Move> moves = inTreeOrder(position, depth);
        if (depth == 0 && rootLines.size() > 1) {
            std::erase_if(moves, [&](const Move& move) { return !isLeft(position, move); });
        }
        statistics[1][at(depth)] += static_cast<int>(moves.size());
        bool hasLegalMove = false;
        for (const Move& move : moves) {
            const auto after = position.play(move);
            if (!after) {
                continue;
            }
            hasLegalMove = true;
            ++treeNodes;
            countMove();
            ++statistics[0][at(depth)];
            Line rest;
            bool isFromTable = false;
            const bool isRepeated = countRepetitions(keyOf(*after)) > 1;
            const bool isCut = !isRepeated && scoreMove(*after, rest, alfa, originalAlfa, beta,
                                                        depth, isFromTable);
            repetitions.getEntry(keyOf(*after)).decreaseRepetitions(keyOf(*after));
            if (isCut) {
                continue;
            }
            if (rest.score >= beta) {
                if (move.captured == NONE) {
                    updateKiller(move, depth);
                }
                ++statistics[4][at(depth)];
                line = {{}, beta};
                return;
            }
            if (rest.score > alfa) {
                alfa = rest.score;
                line.set({move, isFromTable ? "h" : ""}, rest);
            }
        }
        line.score = hasLegalMove ? alfa : position.isInCheck() ? MATED : 0;
    }

    // Whether a root move is legal, and none of the lines before begins with it.
    bool isLeft(const Position& position, const Move& move) const {
        return position.play(move) &&
               std::none_of(rootLines.begin(), rootLines.begin() + static_cast<long>(number),
                            [&](const RootLine& before) {
                                return before.line.moves.front().move.text() == move.text();
                            });
    }

    // Scores the move to `after` for the side that made it. True if the table says that it
    // is not worth a search.
    bool scoreMove(const Position& after, Line& line, int alfa, int originalAlfa, int beta,
                   int depth, bool& isFromTable) {
        const int left = passDepth - 1 - depth;
        if (settings.useTable && !table.empty()) {
            const auto [slot, isClash] = read(after);
            isFromTable = !isClash && slot.state == 'N' && slot.depth >= left;
            line.score = isFromTable ? slot.evaluation : 0;
            read(after); // asked once for the score and once for the cut
            if (!isClash && (slot.state == 'N' || slot.state == 'L') && alfa != originalAlfa &&
                slot.depth + 1 >= left && std::int64_t{slot.evaluation} + 1000 < alfa) {
                return true;
            }
            if (isFromTable) {
                return false;
            }
        }
        if (left != 0) {
            searchTree(after, line, outward(-beta), outward(-alfa), depth + 1);
        } else {
            searchQuiscence(after, line, outward(-beta), outward(-alfa));
        }
        line.score = inward(-line.score);
        if (settings.useTable) {
            store(after, line, left, alfa, beta);
        }
        return false;
    }

    // ---- Quiescence ----

    void searchQuiscence(const Position& position, Line& line, int alfa, int beta) {
        const int material = materialOf(position);
        if (settings.quiscenceMaxDepth == 0) {
            const bool isFarOff = material + 500 < alfa || material - 500 > beta;
            line.score = -(isFarOff ? material : material + positionalOf(position));
            return;
        }
        if (settings.standPat && !position.isInCheck()) {
            const int score = -material - positionalOf(position);
            if (score > alfa && score >= beta) {
                line.score = score;
                return;
            }
            alfa = std::max(alfa, score);
        }
        searchQuiscenceNode(position, line, alfa, beta, 0);
    }

    void searchQuiscenceNode(const Position& position, Line& line, int alfa, int beta, int depth) {
        if (position.clock >= 100) {
            line = {{}, 0};
            return;
        }
        const std::vector<Move> moves = inQuiscenceOrder(position);
        statistics[3][at(depth)] += static_cast<int>(moves.size());
        const bool isInCheck = position.isInCheck();
        bool hasLegalMove = false;
        for (const Move& move : moves) {
            const auto after = position.play(move);
            if (!after) {
                continue;
            }
            hasLegalMove = true;
            countMove();
            ++statistics[2][at(depth)];
            Line rest;
            if (countRepetitions(keyOf(*after)) == 1) {
                scoreQuiscenceMove(*after, move, rest, alfa, beta, depth, isInCheck);
            }
            repetitions.getEntry(keyOf(*after)).decreaseRepetitions(keyOf(*after));
            if (rest.score >= beta) {
                ++statistics[5][at(depth)];
                line = {{}, beta};
                return;
            }
            if (rest.score > alfa) {
                alfa = rest.score;
                line.set({move, "q"}, rest);
            }
        }
        line.score = hasLegalMove ? alfa : isInCheck ? MATED : 0;
    }

    void scoreQuiscenceMove(const Position& after, const Move& move, Line& line, int alfa, int beta,
                            int depth, bool wasInCheck) {
        const int material = materialOf(after);
        const bool givesCheck = after.isInCheck();
        const bool isInteresting = givesCheck || move.captured != NONE || move.promotion != NONE;
        if ((!isInteresting && !wasInCheck) || settings.quiscenceMaxDepth - 1 <= depth) {
            line.score = positionalOf(after) + material;
        } else if (std::int64_t{settings.quiscenceDeltaWindow} + material < alfa && !givesCheck &&
                   !wasInCheck) {
            line.score = material;
        } else {
            searchQuiscenceNode(after, line, outward(-beta), outward(-alfa), depth + 1);
            line.score = inward(-line.score);
        }
    }

    // ---- What both share ----

    // Counts a position of the game or the path, and returns how often it has occurred.
    int countRepetitions(std::uint64_t key) {
        return repetitions.getEntry(key).increaseRepetitions(key);
    }

    void countMove() {
        ++nodes;
        if (++sincePoll > 20000) {
            sincePoll = 0;
            if (isToStop) {
                throw Abandoned();
            }
        }
    }

    // ---- Order of moves ----

    // By drawers, and within a drawer as the moves were.
    static std::vector<Move> inQuiscenceOrder(const Position& position) {
        // By moved and captured piece.
        static constexpr std::array<std::array<int, 6>, 7> drawers = {{{},
                                                                       {9, 4, 2, 3, 3, 0},
                                                                       {9, 6, 4, 5, 5, 2},
                                                                       {9, 5, 3, 4, 4, 1},
                                                                       {9, 5, 3, 4, 4, 1},
                                                                       {9, 8, 6, 7, 7, 4},
                                                                       {9, 5, 3, 4, 4, 1}}};
        std::vector<Move> moves = position.moves();
        std::ranges::stable_sort(
            moves, {}, [](const Move& move) { return drawers[at(move.piece)][at(move.captured)]; });
        return moves;
    }

    std::vector<Move> inTreeOrder(const Position& position, int depth) {
        int hint = 0;
        if (!table.empty()) {
            const Slot& slot = read(position).first;
            hint = slot.state == 'N' || slot.state == 'L' ? slot.move : 0;
        }
        std::vector<Move> moves = position.moves();
        std::ranges::stable_sort(moves, {}, [&](const Move& move) {
            constexpr std::array<int, 6> captures = {0, 5, 2, 4, 3, 1};
            if (hint != 0 && codeOf(move) == hint) {
                return 0;
            }
            if (move.captured != NONE) {
                return captures[at(move.captured)];
            }
            const auto [first, second] = killers[at(depth)];
            const int index = killerIndex(move, depth);
            return index == first ? 6 : index == second ? 7 : 8;
        });
        return moves;
    }

    static int killerIndex(const Move& move, int depth) {
        return depth * 16384 + move.from * 128 + move.to;
    }

    void updateKiller(const Move& move, int depth) {
        auto& [first, second] = killers[at(depth)];
        const int index = killerIndex(move, depth);
        const unsigned count = ++counts[index];
        if (first == index) {
            return;
        }
        if (count > counts[second]) {
            if (count <= counts[first]) {
                second = index;
            } else {
                second = first;
                first = index;
            }
        } else if (count > counts[first]) {
            std::swap(first, second);
        }
    }

    // ---- The table ----

    // The slot of a position, and whether another position has written it. The table must
    // not be empty.
    std::pair<Slot&, bool> read(const Position& position) {
        const std::uint64_t key = keyOf(position);
        Slot& slot = table[static_cast<std::size_t>(key % table.size())];
        const bool isClash = slot.check != static_cast<int>(key >> 48);
        clashes += isClash ? 1 : 0;
        return {slot, isClash};
    }

    // Stores what the move into `position` was worth, with the window of who made it.
    void store(const Position& position, const Line& line, int depth, int alfa, int beta) {
        if (table.empty()) {
            return;
        }
        Slot& slot = read(position).first;
        slot.check = static_cast<int>(keyOf(position) >> 48);
        slot.state = line.score >= beta ? 'H' : line.score > alfa ? 'N' : 'L';
        slot.evaluation = line.score;
        slot.move = line.moves.empty() ? slot.move : codeOf(line.moves.front().move);
        slot.depth = depth;
    }

    Settings settings;
    std::vector<Slot> table;
    std::int64_t clashes = 0;
    RepetitionTable repetitions;                  // of the game and the path
    std::map<int, unsigned> counts;               // cut-offs by ply and quiet move
    std::array<std::array<int, 2>, 20> killers{}; // the two of each ply, 0 for none
    std::vector<RootLine> rootLines;              // one or more
    std::size_t number = 0;                       // of the line of this pass, from 0
    bool isSettled = false;                       // whether the lines before it are mates
    int passDepth = 0;
    std::int64_t nodes = 0;
    std::int64_t treeNodes = 0;
    std::int64_t sincePoll = 0;
    Statistics statistics = {};
};

} // namespace plain
