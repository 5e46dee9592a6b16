#include "search/treeGenerator.h"

#include "base/statistics.h"
#include "search/idaVariant.h"
#include "testing/searchSupport.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <numeric>
#include <sstream>

namespace {

constexpr int FULL = DEFAULT_FIRST_BETA;

Move makeMove(PieceType moved, PieceType captured, FieldIndex from = E2, FieldIndex to = E4) {
    return {from, to, moved, captured, ORDINARY_MOVE, NO_PIECE};
}

class Search : public testing::Test {
protected:
    // A pass of `depth` in a fresh table, without the book.
    Variant searchPass(const std::string& fen, int depth) {
        Position position = positionOf(fen);
        Variant variant;
        generator.clearTable();
        generator.resetSearchedNodes();
        generator.setActualMoveDepth(depth);
        generator.generateTree(position, variant, true);
        return variant;
    }

    // Quiescence alone, of a position in which rooks give check after check.
    Variant searchChecks() {
        Position position = positionOf("3R4/8/8/K5k1/8/1r6/8/8 w - - 0 1");
        Variant variant;
        testStatistics.reset();
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

    std::vector<int> orderOf(const std::vector<Move>& moves, int depth, std::int16_t tableMove) {
        MoveArray array;
        std::ranges::copy(moves, array.begin());
        MoveIndices indices;
        const int count = static_cast<int>(moves.size());
        order.orderMoves(array, indices, count, depth, tableMove);
        return {indices.begin(), indices.begin() + count};
    }

    EngineConfig config = makeConfig();
    TreeGenerator generator{config};
    MoveOrder& order = generator.getState().order;
    TranspositionTable& table = generator.getState().table;
    NodeCounter& counter = generator.getState().nodes;
};

using MoveOrder = Search;
using Quiscence = Search;

TEST_F(MoveOrder, TriesTableMoveCapturesKillersAndTheRest) {
    const Move secondKiller = makeMove(ROOK, NO_PIECE, A1, A3);
    const Move firstKiller = makeMove(ROOK, NO_PIECE, A1, A2);
    const Move tableMove = makeMove(QUEEN, PAWN, D1, D8);
    const std::vector<Move> moves = {
        makeMove(PAWN, KING), // 0
        secondKiller,
        {NO_FIELD, NO_FIELD, NO_PIECE, NO_PIECE, WHITE_KING_SIDE, NO_PIECE},
        {E5, F6, PAWN, PAWN, EN_PASSANT, NO_PIECE},
        makeMove(PAWN, QUEEN), // 4
        {A7, A8, PAWN, NO_PIECE, ORDINARY_MOVE, QUEEN},
        makeMove(PAWN, KNIGHT), // 6
        makeMove(PAWN, BISHOP),
        makeMove(PAWN, ROOK), // 8
        firstKiller,
        tableMove}; // 10
    order.updateKiller(firstKiller, 3);
    order.updateKiller(secondKiller, 3);
    const std::int16_t code = PolyglotEntry::getIntRepresentation(tableMove);
    const std::int16_t killerCode = PolyglotEntry::getIntRepresentation(secondKiller);
    EXPECT_EQ(orderOf(moves, 3, code), (std::vector{10, 4, 8, 7, 6, 3, 9, 1, 0, 2, 5}));
    EXPECT_EQ(orderOf(moves, 3, 0), (std::vector{4, 8, 7, 6, 3, 10, 9, 1, 0, 2, 5}));
    EXPECT_EQ(orderOf(moves, 3, killerCode), (std::vector{1, 4, 8, 7, 6, 3, 10, 9, 0, 2, 5}));
    EXPECT_EQ(orderOf(moves, 4, 405), (std::vector{4, 8, 7, 6, 3, 10, 0, 1, 2, 5, 9}));
}

TEST_F(MoveOrder, HoldsTheLongestMoveList) {
    std::vector<int> all(MAX_MOVES);
    std::iota(all.begin(), all.end(), 0);
    const std::vector<Move> moves(MAX_MOVES, makeMove(PAWN, QUEEN));
    EXPECT_EQ(orderOf(moves, 0, 0), all);
    MoveArray array;
    array.fill(moves.front());
    MoveIndices indices;
    orderMoves(array, indices, MAX_MOVES);
    EXPECT_EQ(std::vector<int>(indices.begin(), indices.end()), all);
}

TEST_F(MoveOrder, KillersRiseByTheirCounts) {
    constexpr int PLY = 19;
    const std::map<char, Move> moves = {
        {'a', makeMove(ROOK, NO_PIECE, A1, A2)},
        {'b', {NO_FIELD, NO_FIELD, NO_PIECE, NO_PIECE, BLACK_QUEEN_SIDE, NO_PIECE}},
        {'c', makeMove(PAWN, NO_PIECE, A7, A8)}};
    const std::map<int, char> names = {{0, '-'},
                                       {PLY * 16384 + 21 * 128 + 31, 'a'},
                                       {PLY * 16384 + 95 * 128 + 93, 'b'},
                                       {PLY * 16384 + 81 * 128 + 91, 'c'}};
    // The cut-offs one by one, and the two killers after each.
    std::string killers;
    for (const char cutOff : std::string("abbcaaccc")) {
        order.updateKiller(moves.at(cutOff), PLY);
        killers += names.at(order.getActualKiller(PLY));
        killers += names.at(order.getActualKiller(PLY + 20));
        killers += ' ';
    }
    EXPECT_EQ(killers, "a- ab ba ba ba ab ab ac ca ");
    EXPECT_EQ(order.getActualKiller(PLY - 1), 0);
}

TEST_F(Search, LmfCutsMovesThatWereSeenToBeWorse) {
    Position position = positionOf(START_FEN);
    struct Case {
        int evaluation, alfaOfEntry, betaOfEntry, alfa, originalAlfa, depth;
        bool isCut;
    };
    for (const auto& [evaluation, alfaOfEntry, betaOfEntry, alfa, originalAlfa, depth, isCut] :
         std::initializer_list<Case>{// evaluation, alfa and beta of the entry; alfa now and at
                                     // the start, depth; cut or not
                                     {-1000, -5000, 9, 1, 0, 3, true},
                                     {-1000, -5000, 9, 0, -1, 3, false},    // a pawn, no more
                                     {-1000, -5000, 9, 1, 1, 3, false},     // the first move
                                     {-1000, -5000, 9, 1, 0, 4, true},      // a ply short
                                     {-1000, -5000, 9, 1, 0, 5, false},     // two plies short
                                     {-1000, -1000, 9, 1, 0, 3, true},      // an upper limit
                                     {-1000, -5000, -1000, 1, 0, 3, false}, // a lower limit
                                     {FULL - 5, -5000, FULL, FULL, 0, 3, false}}) {
        table.addTableEntry(position, nullptr, 3, evaluation, alfaOfEntry, betaOfEntry);
        EXPECT_EQ(table.lmf(position, alfa, originalAlfa, depth), isCut)
            << evaluation << ' ' << betaOfEntry << ' ' << alfa << ' ' << depth;
    }
    table.addTableEntry(position, nullptr, 3, -1000, -5000, 9);
    position.carried.hash ^= std::uint64_t{1} << 63; // the same slot of 65536, another check value
    EXPECT_FALSE(table.lmf(position, 1, 0, 3));
}

TEST_F(Search, KnowsGamesThatAreOverAndTheClock) {
    struct Case {
        std::string fen;
        int evaluation;
        std::string line;
    };
    for (const auto& [fen, evaluation, line] : std::initializer_list<Case>{
             {"7k/5KQ1/8/8/8/8/8/8 b - - 0 1", MATED_EVALUATION, ""},
             {"7k/5KQ1/8/8/8/8/8/8 b - - 100 90", 0, ""},
             {"7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", 0, ""},
             {"7k/8/6K1/8/8/8/8/R7 w - - 98 90", -MATED_EVALUATION - 1, " a1a8"},
             {"7k/8/6K1/8/8/8/8/R7 w - - 99 90", 0, " g6f6"}}) { // as good as any
        const Variant variant = searchPass(fen, 2);
        EXPECT_EQ(variant.evaluation, evaluation) << fen;
        EXPECT_EQ(movesTextOf(variant), line) << fen;
    }
}

TEST_F(Search, WithoutATableIsTheSameAsWithTheTableUnused) {
    const std::string fen = START_FEN;
    config.useTable = false;
    const Variant unused = searchPass(fen, 3);
    const std::int64_t nodes = counter.getSearchedAllNodes();
    for (int i = 0; i < table.getHashTable().getSize(); ++i) {
        ASSERT_EQ(table.getHashTable().getEntry(i).state, FREE);
    }
    config.useTable = true;
    generator.applyChanges(0);
    generator.clearKillersTable();
    const Variant none = searchPass(fen, 3);
    EXPECT_EQ(movesTextOf(none), movesTextOf(unused));
    EXPECT_EQ(none.evaluation, unused.evaluation);
    EXPECT_EQ(counter.getSearchedAllNodes(), nodes);
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
            fresh.setActualMoveDepth(passDepth);
            Position position = positionOf(c.fen);
            Variant variant;
            testStatistics.reset();
            fresh.generateTree(position, variant, true);
            return traceOf(variant);
        };
        const std::string expected = traceTo(c.worksAs);
        EXPECT_GT(testStatistics.get(0, TestStatistics::ORDINAL_SEARCH, c.worksAs - 1), 0);
        EXPECT_EQ(traceTo(c.depth), expected) << c.depth;
        config.treeMaxDepth = c.depth;
        EXPECT_EQ(TreeGenerator(config).getState().actualMoveDepth, c.worksAs);
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
    Position start = positionOf(START_FEN);
    Variant variant;
    generator.quiscenceSearch(start, -FULL, FULL, variant);
    EXPECT_EQ(testStatistics.getRunPointer(), 0);
}

TEST_F(Search, LineIsCompletedFromTheTable) {
    const Position start = positionOf(START_FEN);
    Position position = start;
    const Move first = moveOf(start, "e2e4");
    for (const char* text : {"e2e4", "e7e5", "g1f3", "b8c6"}) {
        const Move move = moveOf(position, text);
        table.addTableEntry(position, &move, 0, 0, -1, 1);
        play(position, text);
    }
    table.addTableEntry(position, &first, 0, 0, -1, 1); // not possible here
    for (const auto& [length, text] :
         {std::pair{1, " e2e4"}, {3, " e2e4 e7e5 g1f3"}, {20, " e2e4 e7e5 g1f3 b8c6"}}) {
        Variant line;
        line.extend(Variant(), {first, false, true, false});
        generator.completeVariant(start, line, length);
        EXPECT_EQ(movesTextOf(line), text);
        EXPECT_TRUE(line.variantMoves[0].isHash);
    }
}

TEST_F(Search, PollsTheFlagAfter20000Nodes) {
    EXPECT_FALSE(counter.timerUp());
    IdaVariant slot;
    slot.signalReady(slot.getNextThreadId());
    generator.setIdaVariant(&slot);
    const Variant abandoned = searchPass(START_FEN, 4);
    EXPECT_TRUE(generator.isAbandoned());
    EXPECT_EQ(counter.getSearchedAllNodes(), 20001);
    EXPECT_EQ(abandoned.evaluation, FULL);
    EXPECT_EQ(abandoned.varLength, 0);
}

TEST_F(Quiscence, FollowsItsRulesAtTheBounds) {
    enum Reach { NO_MOVE, SOME_MOVES, EACH_MOVE_ONCE, FURTHER };
    const std::string queen = "4k3/8/2p5/3p4/8/8/8/3QK3 w - - 0 1";  // can be lost on d5
    const std::string even = "4k3/8/4p3/8/8/4P3/8/4K3 w - - 0 1";    // scores 0
    const std::string capture = "7k/8/8/3p4/4P3/8/8/K7 w - - 0 1";   // 1000 after e4d5
    const std::string checking = "3k4/8/8/3p4/8/8/8/K2R4 w - - 0 1"; // 5000 after d1d5
    const std::string promotion = "8/P7/8/8/8/8/7k/K7 w - - 0 1";    // 9500 at the most
    const std::string inCheck = "4k3/8/8/8/4r3/8/8/QQQ1K3 w - - 0 1";
    struct Case {
        std::string fen;
        int maxDepth;
        bool canStandPat;
        int alfa, beta, evaluation;
        Reach reach;
    };
    for (const Case& c : std::initializer_list<Case>{
             // position, greatest depth, stands pat, alfa, beta; score, reach
             {queen, 0, true, -7000, FULL, 7500 - 31, NO_MOVE}, // asked with the bounds as they
             {queen, 0, true, -6999, FULL, 7500, NO_MOVE},      // are: the score is -7500 there
             {queen, 1, false, -FULL, FULL, 8500 - 9, EACH_MOVE_ONCE},
             {queen, 2, false, -FULL, FULL, 7500 - 31 + 4, FURTHER},
             {even, 10, true, -100, 0, 0, NO_MOVE},
             {even, 10, true, -100, -40, 0, NO_MOVE}, // beyond beta
             {even, 10, true, 100, 200, 100, EACH_MOVE_ONCE},
             {even, 10, false, -100, -40, -40, SOME_MOVES},
             {inCheck, 2, true, -FULL, 1, 1, SOME_MOVES},
             {capture, 10, true, 3000, FULL, 3000, FURTHER},
             {capture, 10, true, 3001, FULL, 3001, EACH_MOVE_ONCE},
             {checking, 10, true, 7001, FULL, 7001, FURTHER},
             {promotion, 10, true, 11500, FULL, 11500, FURTHER},
             {promotion, 10, true, 11501, FULL, 11501, EACH_MOVE_ONCE},
             {"7k/5KQ1/8/8/8/8/8/8 b - - 0 1", 1, false, 5, 6, MATED_EVALUATION, NO_MOVE},
             {"7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", 1, false, 5, 6, 0, NO_MOVE},
             {"7k/5KQ1/8/8/8/8/8/8 b - - 100 90", 10, false, 5, 6, 0, NO_MOVE}}) {
        config.quiscenceMaxDepth = c.maxDepth;
        config._new_feature_quiscence_optimization = c.canStandPat;
        Position position = positionOf(c.fen);
        const auto moves = static_cast<std::int64_t>(legalMovesOf(position).size());
        Variant variant;
        generator.resetSearchedNodes();
        generator.quiscenceSearch(position, c.alfa, c.beta, variant);
        const std::int64_t nodes = counter.getSearchedAllNodes();
        const Reach reach = nodes == 0      ? NO_MOVE
                            : nodes < moves ? SOME_MOVES
                            : nodes > moves ? FURTHER
                                            : EACH_MOVE_ONCE;
        EXPECT_EQ(variant.evaluation, c.evaluation) << c.fen << c.alfa;
        EXPECT_EQ(reach, c.reach) << c.fen << c.alfa << ' ' << nodes;
    }
}

} // namespace
