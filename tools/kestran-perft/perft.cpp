#include "kestran-perft/perft.h"

#include "base/platform.h"
#include "board/makeMove.h"
#include "notation/longAlgebraicMove.h"
#include "search/infoStruct.h"
#include "support/commandLine.h"
#include "support/gameInput.h"

#include <iostream>
#include <vector>

namespace {

// The number of sequences of 13 moves from the start position nearly fills 64 bits.
constexpr int MAX_PERFT_DEPTH = 12;

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

} // namespace

const std::string PERFT_HELP =
    R"(Usage: kestran-perft FEN DEPTH

Counts the sequences of DEPTH legal moves, 0 to 12, from a position: for each first move,
and in all. FEN stands in quotes or in several words; "startpos" is the start position.
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
    std::vector<std::string> words = commandLine.takeRest();
    if (words.size() < 2) {
        throw UsageError("a position and a depth are needed");
    }
    const int depth = parseNumber(words.back(), "the depth", 0, MAX_PERFT_DEPTH);
    words.pop_back();
    Position position = readGame(words, "").position;

    const Milliseconds start = clockMilliseconds();
    const std::int64_t nodes = depth == 0 ? 1 : split(position, depth);
    const Milliseconds elapsed = clockMilliseconds() - start;
    std::cout << "Nodes: " << nodes << '\n'
              << "Time: " << elapsed << " ms\n"
              << "Nodes per second: " << nodesPerSecond(nodes, elapsed) << '\n';
    return 0;
}
