// Generating, making and unmaking moves: known numbers. plainRulesTest compares each move.
#include "support/plainRules.h"
#include "testing/boardSupport.h"

#include <gtest/gtest.h>

namespace {

#ifdef KESTRAN_SLOW_BUILD
constexpr long MOST_SEQUENCES = 10'000;
#else
constexpr long MOST_SEQUENCES = 5'000'000;
#endif

long countSequences(Position& position, int depth) {
    MoveArray moves;
    const int generated = generateMoves(position, moves);
    long count = 0;
    for (int i = 0; i < generated; ++i) {
        DoMoveContext context;
        if (doMove(position, moves[i], context)) {
            count += depth == 1 ? 1 : countSequences(position, depth - 1);
            undoMove(position, moves[i], context);
        }
    }
    return count;
}

// To the greatest depth with at most MOST_SEQUENCES sequences.
TEST(Perft, CountsKnownNumbers) {
    for (const PerftLine& line : readPerftLines()) {
        const auto end = std::ranges::upper_bound(line.counts, MOST_SEQUENCES);
        if (const auto depth = static_cast<int>(end - line.counts.begin()); depth > 0) {
            Position position = positionOf(line.fen);
            EXPECT_EQ(countSequences(position, depth), *(end - 1)) << line.fen;
        }
    }
}

TEST(PlainTwin, DeadMaterial) {
    for (const auto& [pieces, isDead] : {std::pair("8/8", true),
                                         {"8/N7", true},
                                         {"8/b7", true},
                                         {"8/bN6", false},
                                         {"8/p7", false},
                                         {"r7/8", false}}) {
        const plain::Position board("k7/8/8/8/8/" + std::string(pieces) + "/7K w - - 0 1");
        EXPECT_EQ(board.canAnyoneMate(), !isDead) << pieces;
    }
}

} // namespace
