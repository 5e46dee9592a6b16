#include "kestran-perft/perft.h"

#include "base/clock.h"
#include "board/makeMove.h"
#include "notation/longAlgebraicMove.h"
#include "search/infoStruct.h"
#include "support/commandLine.h"
#include "support/epd.h"
#include "support/gameInput.h"

#include <algorithm>
#include <charconv>
#include <iostream>
#include <optional>
#include <vector>

namespace {

// The number of sequences of 13 moves from the start position nearly fills 64 bits.
constexpr int MAX_PERFT_DEPTH = 12;
constexpr std::size_t FEN_FIELDS = 6;

// Counts move by move of the root, and prints each with its share.
std::int64_t split(Position& position, int depth) {
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
        std::cout << name << ": " << share << std::endl;
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

// Nothing for an operation that is no count, such as a name.
std::optional<ExpectedCount> readCount(const EpdRecord& record, const std::string& operation) {
    if (operation.size() < 2 || operation[0] != 'D' || operation[1] < '0' || operation[1] > '9') {
        return std::nullopt;
    }
    const std::size_t blank = operation.find(' ');
    const std::string depth = operation.substr(1, blank - 1);
    const std::string count = blank == std::string::npos ? "" : operation.substr(blank + 1);
    const char* end = count.data() + count.size();
    ExpectedCount expected = {};
    const auto [stopped, fault] = std::from_chars(count.data(), end, expected.sequences);
    if (fault != std::errc() || stopped != end || expected.sequences < 0) {
        throw UsageError(placeOf(record) + " has no count behind D" + depth);
    }
    expected.depth =
        parseNumber(depth, placeOf(record) + ": the depth behind D", 0, MAX_PERFT_DEPTH);
    return expected;
}

struct CountedPosition {
    EpdRecord record;
    std::vector<ExpectedCount> counts; // at least one
};

// The positions of a file with their counts of at most `depth` plies. Those without any
// are left out.
std::vector<CountedPosition> readCountedPositions(const std::string& path, int depth) {
    std::vector<CountedPosition> positions;
    for (const EpdRecord& record : readEpd(path)) {
        std::vector<ExpectedCount> counts;
        for (const std::string& operation : record.operations) {
            const std::optional<ExpectedCount> count = readCount(record, operation);
            if (count && count->depth <= depth) {
                counts.push_back(*count);
            }
        }
        if (!counts.empty()) {
            positions.push_back({record, counts});
        }
    }
    if (positions.empty()) {
        throw UsageError("the file " + path + " has no count, such as \";D3 8902\", of at most " +
                         std::to_string(depth) + " plies");
    }
    return positions;
}

void printTotal(std::int64_t nodes, Milliseconds elapsed) {
    std::cout << "Nodes: " << nodes << '\n'
              << "Time: " << elapsed << " ms\n"
              << "Nodes per second: " << nodesPerSecond(nodes, elapsed) << '\n';
}

// What the check of a file has come to.
struct CheckTally {
    std::int64_t nodes = 0;
    int counted = 0;
    int wrong = 0;
};

// Counts once more what the file says of a position, and prints a line about it.
void checkPosition(const CountedPosition& counted, CheckTally& tally, Progress& progress) {
    Position position = counted.record.position;
    std::string faults;
    for (const auto& [depth, sequences] : counted.counts) {
        const std::string name = std::string("D").append(std::to_string(depth));
        progress.show(placeOf(counted.record) + ", " + name + ", " + std::to_string(tally.counted) +
                      " counts done, " + std::to_string(tally.wrong) + " wrong");
        const std::int64_t found = perft(position, depth);
        tally.nodes += found;
        ++tally.counted;
        if (found != sequences) {
            ++tally.wrong;
            faults += ", " + name + " is " + std::to_string(found) + " and not " +
                      std::to_string(sequences);
        }
    }
    progress.show("");
    std::cout << (faults.empty() ? "ok     " : "WRONG  ") << placeOf(counted.record) << faults
              << ": " << counted.record.fen << std::endl;
}

// Whether all counts of the file are right.
bool checkCounts(const std::string& path, int depth) {
    const std::vector<CountedPosition> positions = readCountedPositions(path, depth);
    const Milliseconds start = clockMilliseconds();
    Progress progress;
    CheckTally tally;
    for (const CountedPosition& position : positions) {
        checkPosition(position, tally, progress);
    }
    std::cout << "Positions: " << positions.size() << '\n'
              << "Counts: " << tally.counted << ", of which " << tally.wrong << " are wrong\n";
    printTotal(tally.nodes, clockMilliseconds() - start);
    return tally.wrong == 0;
}

// The depth that stands behind the words of a position; takes it out.
int takeDepth(std::vector<std::string>& words) {
    const bool isWholeFen =
        words.size() == FEN_FIELDS && std::ranges::none_of(words, [](const std::string& word) {
            return word.find(' ') != std::string::npos;
        });
    if (isWholeFen) {
        throw UsageError("the six fields of a position need a depth behind them; a position of "
                         "five fields stands in quotes");
    }
    if (words.size() < 2) {
        throw UsageError("a position and a depth are needed");
    }
    const int depth = parseNumber(words.back(), "the depth", 0, MAX_PERFT_DEPTH);
    words.pop_back();
    return depth;
}

} // namespace

const std::string PERFT_HELP =
    R"(Usage: kestran-perft FEN DEPTH [--moves "MOVES"]
       kestran-perft --epd FILE [DEPTH]

Counts the sequences of DEPTH legal moves, 0 to 12, from a position: for each first move,
and in all. FEN stands in quotes or in several words; "startpos" is the start position.

  --moves "MOVES"  a game from FEN to the position: 1. e4 e5 2. Nf3, with or without its
                   numbers, or e2e4 e7e5 g1f3
  --epd FILE       checks the counts of a file instead: a line for each position, its FEN
                   and then its counts, as in ";D1 20 ;D2 400". Those of more than DEPTH
                   plies are left out

Exit status: 0; 1 if a count of FILE is wrong or the output cannot be written; 2 for input
that makes no sense.
)";

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

int runPerft(CommandLine& commandLine) {
    const auto path = commandLine.takeOption("--epd");
    const auto moves = commandLine.takeOption("--moves");
    std::vector<std::string> words = commandLine.takeRest();
    if (path) {
        if (moves || words.size() > 1) {
            throw UsageError("--epd goes with nothing but a file and a depth");
        }
        const int depth = words.empty()
                              ? MAX_PERFT_DEPTH
                              : parseNumber(words.front(), "the depth", 0, MAX_PERFT_DEPTH);
        return checkCounts(*path, depth) ? 0 : 1;
    }
    const int depth = takeDepth(words);
    Position position = readGame(words, moves.value_or("")).position;

    const Milliseconds start = clockMilliseconds();
    const std::int64_t nodes = depth == 0 ? 1 : split(position, depth);
    printTotal(nodes, clockMilliseconds() - start);
    return 0;
}
