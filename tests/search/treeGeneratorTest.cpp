#include "search/treeGenerator.h"

#include "search/idaVariant.h"
#include "search/statistics.h"
#include "testing/searchSupport.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <sstream>

namespace {

constexpr int FULL = DEFAULT_FIRST_BETA;

class Search : public testing::Test {
protected:
    // A pass of `depth` in a fresh table, without the book.
    Variant searchPass(const std::string& fen, int depth) {
        Position position = positionOf(fen);
        Variant variant;
        generator.state.table.clearTable();
        counter.resetSearchedNodes();
        generator.generateTree(position, variant, depth, RootWindow(), true);
        return variant;
    }

    // Quiescence alone, of a position in which rooks give check after check.
    Variant searchChecks() {
        Position position = positionOf("3R4/8/8/K5k1/8/1r6/8/8 w - - 0 1");
        Variant variant;
        testStatistics.reset();
        generator.countIn(testStatistics);
        generator.quiscenceSearch(position, -FULL, FULL, variant);
        return variant;
    }

    // What the last search has found, and what it has counted at each ply.
    static std::string traceOf(const Variant& variant) {
        std::ostringstream text;
        text << variant.evaluation << movesTextOf(variant);
        for (int i = 0; i < N_TYPES * MAX_PLIES; ++i) {
            text << ' ' << testStatistics.get(0, i / MAX_PLIES, i % MAX_PLIES);
        }
        return text.str();
    }

    EngineConfig config = makeConfig();
    TreeGenerator generator{config};
    NodeCounter& counter = generator.state.nodes;
};

using Quiscence = Search;

TEST_F(Search, AsksTheBookUnlessItIsInfinite) {
    Position position = positionOf(START_FEN);
    Variant variant;
    generator.generateTree(position, variant, 1, RootWindow(), false);
    ASSERT_EQ(variant.varLength, 1);
    EXPECT_TRUE(variant.get(0).isOpening);
    EXPECT_FALSE(searchPass(START_FEN, 1).get(0).isOpening);
}

TEST_F(Search, CompletesALineByWhatTheTableHolds) {
    Position pinned = positionOf("4r2k/8/8/8/8/8/4R3/4K3 w - - 0 1");
    const auto lengthWith = [&](const Move& move) {
        generator.state.table.addTableEntry(pinned, &move, 1, 0, -FULL, FULL);
        Variant line;
        generator.completeVariant(pinned, line, 3);
        return line.varLength;
    };
    EXPECT_EQ(lengthWith(moveOf(pinned, "e2e8")), 1);
    EXPECT_EQ(lengthWith({E2, D2, ROOK, NO_PIECE, ORDINARY_MOVE, NO_PIECE}), 0); // of another key
    EXPECT_EQ(lengthWith({E2, A2, KNIGHT, NO_PIECE, ORDINARY_MOVE, NO_PIECE}), 0);
}

TEST_F(Search, NeedsNoTable) {
    const Variant line = searchPass(START_FEN, 2);
    EXPECT_EQ(generator.state.table.resize(0), 0);
    Variant withoutTable = searchPass(START_FEN, 2);
    EXPECT_EQ(withoutTable.evaluation, line.evaluation);
    EXPECT_EQ(movesTextOf(withoutTable), movesTextOf(line));
    generator.completeVariant(positionOf(START_FEN), withoutTable, MAX_VARIANT_MOVES);
    EXPECT_EQ(movesTextOf(withoutTable), movesTextOf(line));
}

TEST_F(Search, OrdersTheLongestMoveList) {
    MoveArray moves;
    moves.fill({E2, E4, PAWN, QUEEN, ORDINARY_MOVE, NO_PIECE}); // all of one drawer
    MoveIndices expected;
    std::iota(expected.begin(), expected.end(), std::uint16_t{0});
    MoveIndices indices;
    generator.state.order.orderMoves(moves, indices, MAX_MOVES, 0, 0);
    EXPECT_EQ(indices.elements, expected.elements);
    orderMoves(moves, indices, MAX_MOVES);
    EXPECT_EQ(indices.elements, expected.elements);
}

TEST_F(Search, DepthOutsideItsRangeWorksAsTheNearestInside) {
    // Hardly a move but those of the kings, so that 20 plies are soon searched.
    const std::string locked = "k7/p1p1p3/P1P1P3/8/8/p1p1p3/P1P1P3/K7 w - - 0 1";
    const std::string nearlyDrawn = "7k/8/8/8/8/8/8/K7 w - - 97 90";
    struct Case {
        std::string fen;
        int depth, worksAs;
    };
    for (const Case& c :
         std::initializer_list<Case>{// position, depth, works as
                                     {locked, 22, 20},
                                     {locked, std::numeric_limits<int>::max(), 20},
                                     {nearlyDrawn, 0, 1},
                                     {nearlyDrawn, std::numeric_limits<int>::min(), 1}}) {
        const auto traceTo = [&](int passDepth) {
            TreeGenerator fresh(config); // as a cleared table still gives hints
            fresh.countIn(testStatistics);
            Position position = positionOf(c.fen);
            Variant variant;
            testStatistics.reset();
            fresh.generateTree(position, variant, passDepth, RootWindow(), true);
            return traceOf(variant);
        };
        const std::string expected = traceTo(c.worksAs);
        EXPECT_GT(testStatistics.get(0, TestStatistics::ORDINAL_SEARCH, c.worksAs - 1), 0);
        EXPECT_EQ(traceTo(c.depth), expected) << c.depth;
    }
}

TEST_F(Quiscence, DepthOutsideItsRangeWorksAsTheNearestInside) {
    constexpr int DEEPEST = 30;
    const auto traceTo = [this](int depth) {
        config.quiscenceMaxDepth = depth;
        return traceOf(searchChecks());
    };
    const std::string deepest = traceTo(DEEPEST);
    EXPECT_GT(testStatistics.get(0, TestStatistics::Q_SEARCH, DEEPEST - 1), 0);
    EXPECT_NE(traceTo(DEEPEST - 1), deepest);
    for (const int depth : {60, 300, std::numeric_limits<int>::max()}) {
        EXPECT_EQ(traceTo(depth), deepest) << depth;
    }
    EXPECT_EQ(traceTo(std::numeric_limits<int>::min()), traceTo(1));
}

TEST_F(Quiscence, OpensARunOfTheCountersOnlyIfNoneIsOpen) {
    searchChecks(); // which has closed all runs
    EXPECT_EQ(testStatistics.getRunPointer(), 0);
    Position position = positionOf(START_FEN);
    Variant variant;
    generator.quiscenceSearch(position, -FULL, FULL, variant);
    EXPECT_EQ(testStatistics.getRunPointer(), 0);
}

TEST_F(Search, PollsTheFlagAfter20000Nodes) {
    EXPECT_FALSE(counter.timerUp());
    IdaVariant slot;
    slot.signalReady(slot.getNextThreadId());
    counter.setIdaVariant(&slot);
    const Variant abandoned = searchPass(START_FEN, 4);
    EXPECT_TRUE(counter.isAbandoned());
    EXPECT_EQ(counter.getSearchedAllNodes(), 20001);
    EXPECT_EQ(abandoned.evaluation, FULL);
    EXPECT_EQ(abandoned.varLength, 0);
}

} // namespace
