// The records of the board, their invariants, and the position key.
#include "board/boardRepresentationUtils.h"
#include "board/hashFunctions.h"
#include "testing/boardSupport.h"

#include <gtest/gtest.h>

namespace {

TEST(StartPosition, IsSetUpInTheOrderOfTheList) {
    Position position;
    initializeToStartPosition(position);
    EXPECT_EQ(findDifference(position, positionOf(START_FEN)), "");
    EXPECT_EQ(findInconsistency(position), "");
    EXPECT_EQ(position.check, IS_NOT_CHECK);
    EXPECT_EQ(totalMaterial(position), 79400);

    const int fields[] = {25, 31, 32, 33, 34, 35, 36, 37, 38, 21, 28, 22, 27, 23, 26, 24,
                          95, 81, 82, 83, 84, 85, 86, 87, 88, 91, 98, 92, 97, 93, 96, 94};
    for (std::size_t i = 0; i < std::size(fields); ++i) {
        EXPECT_EQ(position.pieces[i].boardPosition, fields[i]) << "entry " << i;
    }
}

TEST(ReflectBoard, LeavesOutWhatTheListCannotHold) {
    const Position position = positionOf("4k3/8/8/8/8/QQQQQQQQ/QQQQQQQQ/K7 w - - 0 1");
    EXPECT_EQ(position.pieces[KingIndex[BLACK]].pieceType, KING);
    EXPECT_EQ(position.material[WHITE], 15 * 9500);
}

TEST(TestMoveEquality, ComparesCastlingsByFlagAndTheRestByFields) {
    const Move castling = {1, 2, KING, NO_PIECE, WHITE_KING_SIDE, NO_PIECE};
    const Move sameCastling = {3, 4, PAWN, NO_PIECE, WHITE_KING_SIDE, NO_PIECE};
    const Move capture = {65, 74, PAWN, PAWN, ORDINARY_MOVE, NO_PIECE};
    const Move enPassant = {65, 74, PAWN, PAWN, EN_PASSANT, NO_PIECE};
    EXPECT_TRUE(testMoveEquality(castling, sameCastling));
    EXPECT_FALSE(testMoveEquality(castling, {1, 2, KING, NO_PIECE, WHITE_QUEEN_SIDE, NO_PIECE}));
    EXPECT_TRUE(testMoveEquality(capture, enPassant));
    for (PieceType Move::*member : {&Move::from, &Move::to, &Move::pieceMoved, &Move::pieceCaptured,
                                    &Move::promotionPieceType}) {
        Move other = capture;
        ++(other.*member);
        EXPECT_FALSE(testMoveEquality(capture, other));
    }
}

TEST(FindInconsistency, TellsEachBrokenInvariant) {
    using Breaking = void (*)(Position&);
    // What is done to a sound position, and a part of the complaint about it.
    const std::pair<const char*, Breaking> cases[] = {
        {"border and board", [](Position& p) { p.board[29].color = EMPTY; }},
        {"border and board", [](Position& p) { p.board[55].color = BORDER; }},
        {"colour's range", [](Position& p) { p.board[21].pieceIndexInList = 25; }},
        {"colour's range", [](Position& p) { p.board[21].color = BLACK; }},
        {"another piece", [](Position& p) { p.board[21].pieceType = QUEEN; }},
        {"another piece", [](Position& p) { p.board[21].pieceIndexInList = 10; }},
        {"another piece", [](Position& p) { p.pieces[9].pieceType = NO_PIECE; }},
        {"another piece", [](Position& p) { p.pieces[9].boardPosition = 55; }},
        {"point back", [](Position& p) { p.board[21].color = EMPTY; }},
        {"point back", [](Position& p) { p.pieces[15] = p.pieces[9]; }},
        {"off the board",
         [](Position& p) {
             p.pieces[15] = {QUEEN, 20};
         }},
        {"king's entry",
         [](Position& p) {
             std::swap(p.pieces[0], p.pieces[1]);
             std::swap(p.board[25].pieceIndexInList, p.board[31].pieceIndexInList);
         }},
        {"material", [](Position& p) { p.material[WHITE] += 1000; }},
        {"key", [](Position& p) { p.hash ^= 1; }},
        {"check cache", [](Position& p) { p.check = IS_CHECK; }},
    };
    // White has no queen, so that its last entry is free.
    const Position sound = positionOf("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNB1KBNR w KQkq - 0 1");
    ASSERT_EQ(findInconsistency(sound), "");
    for (const auto& [complaint, breakIt] : cases) {
        Position broken = sound;
        breakIt(broken);
        EXPECT_NE(findInconsistency(broken).find(complaint), std::string::npos)
            << complaint << " expected, told \"" << findInconsistency(broken) << '"';
    }
    Position leftOvers = sound;
    leftOvers.board[24] = {EMPTY, PAWN, 30};
    leftOvers.pieces[15].boardPosition = 21;
    leftOvers.check = IS_NOT_CHECK;
    EXPECT_EQ(findInconsistency(leftOvers), "");
}

TEST(RequireConsistent, EndsTheProcess) {
    Position position = positionOf(START_FEN);
    requireConsistent(position);
    position.hash ^= 1;
    EXPECT_DEATH(requireConsistent(position), "the key is off");
}

// ---- Keys ----

TEST(Key, IsThePublishedOne) {
    const std::pair<const char*, std::uint64_t> cases[] = {
        {"", 0x463B96181691FC9C},
        {"e2e4", 0x823C9B50FD114196},
        {"e2e4 d7d5", 0x0756B94461C50FB0},
        {"e2e4 d7d5 e4e5", 0x662FAFB965DB29D4},
        {"e2e4 d7d5 e4e5 f7f5", 0x22A48B5A8E47FF78},
        {"e2e4 d7d5 e4e5 f7f5 e1e2", 0x652A607CA3F242C1},
        {"e2e4 d7d5 e4e5 f7f5 e1e2 e8f7", 0x00FDD303C946BDD9},
        {"a2a4 b7b5 h2h4 b5b4 c2c4", 0x3C8123EA7B067637},
        {"a2a4 b7b5 h2h4 b5b4 c2c4 b4c3 a1a3", 0x5C3F9B829B279560},
    };
    for (const auto& [moves, key] : cases) {
        const Position position = positionAfter(moves);
        EXPECT_EQ(position.hash, key) << moves;
        EXPECT_EQ(positionOf(getFen(position)).hash, key) << moves;
    }
}

// The keys above touch few of the numbers; a digest of all of them finds a slip.
TEST(Key, IsMadeOfThePublishedNumbers) {
    std::uint64_t digest = 14695981039346656037U;
    for (const std::uint64_t number : ZobristRandomArray) {
        digest = (digest ^ number) * 1099511628211U;
    }
    EXPECT_EQ(digest, 0xDBDD6C53476F44E5);
}

TEST(Key, TellsTheFourRightsApart) {
    const std::size_t numbers[] = {769, 768, 771, 770};
    for (int right = 0; right < CASTLES; ++right) {
        EXPECT_EQ(getCastleHash(right), ZobristRandomArray[numbers[right]]);
    }
}

} // namespace
