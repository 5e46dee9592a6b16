// The records of the board, their invariants, and the position key.
#include "board/hashFunctions.h"
#include "board/positionCheck.h"
#include "board/setUp.h"
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
}

TEST(ReflectBoard, LeavesOutPiecesAfterThe16th) {
    const Position position = positionOf("4k3/8/8/8/8/QQQQQQQQ/QQQQQQQQ/K7 w - - 0 1");
    EXPECT_EQ(position.pieces[KingIndex[BLACK]].pieceType, KING);
    EXPECT_EQ(position.incremental.material[WHITE], 15 * 9500);
}

TEST(TestMoveEquality, ComparesCastlingsByFlagAndOtherMovesBySquares) {
    const Move castling = {A1, A2, KING, NO_PIECE, WHITE_KING_SIDE, NO_PIECE};
    const Move sameCastling = {A3, A4, PAWN, NO_PIECE, WHITE_KING_SIDE, NO_PIECE};
    const Move capture = {E5, D6, PAWN, PAWN, ORDINARY_MOVE, NO_PIECE};
    const Move enPassant = {E5, D6, PAWN, PAWN, EN_PASSANT, NO_PIECE};
    EXPECT_TRUE(testMoveEquality(castling, sameCastling));
    EXPECT_FALSE(testMoveEquality(castling, {A1, A2, KING, NO_PIECE, WHITE_QUEEN_SIDE, NO_PIECE}));
    EXPECT_TRUE(testMoveEquality(capture, enPassant));
    for (const Move& other : std::initializer_list<Move>{{E4, D6, PAWN, PAWN, {}, {}},
                                                         {E5, E6, PAWN, PAWN, {}, {}},
                                                         {E5, D6, ROOK, PAWN, {}, {}},
                                                         {E5, D6, PAWN, ROOK, {}, {}},
                                                         {E5, D6, PAWN, PAWN, {}, QUEEN}}) {
        EXPECT_FALSE(testMoveEquality(capture, other));
    }
}

TEST(FindInconsistency, ReportsEachBrokenInvariant) {
    using Breaking = void (*)(Position&);
    // A part of the report, and the change to a consistent position that causes it.
    const std::pair<const char*, Breaking> cases[] = {
        {"border and board", [](Position& p) { p.board[H1 + 1].color = EMPTY; }},
        {"border and board", [](Position& p) { p.board[E4].color = static_cast<Color>(-1); }},
        {"border and board", [](Position& p) { p.board[A1 - 1].color = static_cast<Color>(4); }},
        {"colour's range", [](Position& p) { p.board[A1].pieceIndexInList = 25; }},
        {"colour's range", [](Position& p) { p.board[A1].color = BLACK; }},
        {"another piece", [](Position& p) { p.board[A1].pieceType = QUEEN; }},
        {"another piece", [](Position& p) { p.board[A1].pieceIndexInList = 10; }},
        {"another piece", [](Position& p) { p.pieces[9].boardPosition = E4; }},
        {"point back", [](Position& p) { p.board[A1].color = EMPTY; }},
        {"point back", [](Position& p) { p.pieces[15] = p.pieces[9]; }},
        {"point back", [](Position& p) { p.pieces[15] = p.pieces[17]; }},
        {"off the board",
         [](Position& p) {
             p.pieces[15] = Piece{QUEEN, A1 - 1};
         }},
        {"king's entry",
         [](Position& p) {
             std::swap(p.pieces[0], p.pieces[1]);
             std::swap(p.board[E1].pieceIndexInList, p.board[A2].pieceIndexInList);
         }},
        {"material", [](Position& p) { p.incremental.material[WHITE] += 1000; }},
        {"key", [](Position& p) { p.incremental.hash ^= 1; }},
        {"for colour 1", [](Position& p) { p.ofColor[BLACK] ^= setOf(E4); }},
        {"for kind 2", [](Position& p) { p.ofType[ROOK] ^= setOf(A1); }},
        {"set of entries", [](Position& p) { p.entries ^= 1; }},
        {"set of entries", [](Position& p) { p.pawnEntries ^= entrySetOf(17); }},
        {"sum of the pieces",
         [](Position& p) { p.incremental.sum += pieceSums[BLACK][KNIGHT][F6]; }},
        {"remembered check", [](Position& p) { p.check = IS_CHECK; }},
    };
    // White has no queen, so its last list entry is free.
    const Position sound = positionOf("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNB1KBNR w KQkq - 0 1");
    ASSERT_EQ(findInconsistency(sound), "");
    for (const auto& [complaint, breakIt] : cases) {
        Position broken = sound;
        breakIt(broken);
        EXPECT_NE(findInconsistency(broken).find(complaint), std::string::npos)
            << complaint << " expected, got \"" << findInconsistency(broken) << '"';
    }
    Position leftOvers = sound;
    leftOvers.board[D1] = {EMPTY, PAWN, 30};
    leftOvers.pieces[15].boardPosition = A1;
    leftOvers.check = IS_NOT_CHECK;
    EXPECT_EQ(findInconsistency(leftOvers), "");
}

TEST(RequireConsistent, EndsTheProcess) {
    Position position = positionOf(START_FEN);
    requireConsistent(position);
    position.incremental.hash ^= 1;
    EXPECT_DEATH(requireConsistent(position), "the key is off");
}

// ---- Keys ----

TEST(Key, IsThePublishedOne) {
    const std::pair<const char*, std::uint64_t> cases[] = {
        {"", 0x463B96181691FC9C},
        {"e2e4", 0x823C9B50FD114196},
        {"e2e4 d7d5 e4e5 f7f5", 0x22A48B5A8E47FF78},
        {"e2e4 d7d5 e4e5 f7f5 e1e2 e8f7", 0x00FDD303C946BDD9},
        {"a2a4 b7b5 h2h4 b5b4 c2c4 b4c3 a1a3", 0x5C3F9B829B279560},
    };
    for (const auto& [moves, key] : cases) {
        const Position position = positionAfterMoves(moves);
        EXPECT_EQ(position.incremental.hash, key) << moves;
        EXPECT_EQ(positionOf(getFen(position)).incremental.hash, key) << moves;
    }
}

// The keys above use few of the numbers. A digest of all finds a wrong one.
TEST(Key, IsMadeOfThePublishedNumbers) {
    std::uint64_t digest = 14695981039346656037U;
    for (const std::uint64_t number : ZobristRandomArray) {
        digest = (digest ^ number) * 1099511628211U;
    }
    EXPECT_EQ(digest, 0xDBDD6C53476F44E5);
}

} // namespace
