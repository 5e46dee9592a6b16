// Text forms of positions and moves.
#include "board/positionCheck.h"
#include "notation/diagram.h"
#include "notation/fen.h"
#include "notation/letters.h"
#include "notation/moveText.h"
#include "notation/polyglotEntry.h"
#include "testing/boardSupport.h"
#include "testing/printed.h"

#include <gtest/gtest.h>
#include <limits>
#include <map>

namespace {

// ---- FEN ----

TEST(Fen, ComesBackAsItWasRead) {
    for (const PerftLine& line : readPerftLines()) {
        EXPECT_EQ(getFen(positionOf(line.fen)), line.fen.substr(0, line.fen.rfind(' ')));
    }
}

TEST(Fen, IsReadWithoutChecks) {
    const std::pair<const char*, const char*> cases[] = {
        {"8/8/8/8/8/8/8/K1k5 w - -", "8/8/8/8/8/8/8/K1k5 w - - 0"},
        {"8/8/8/8/8/8/8/K1k5 b - - - 7", "8/8/8/8/8/8/8/K1k5 b - - 0"},
        {"8/8/8/8/8/8/8/K1k5 b - - 12", "8/8/8/8/8/8/8/K1k5 b - - 12"},
        {"8/8/8/8/8/8/8/K1k5 w - - x", "8/8/8/8/8/8/8/K1k5 w - - 0"},
        {"8/8/8/8/8/8/8/K1k5 w  - - 5", "8/8/8/8/8/8/8/K1k5 w - - 0"}, // an empty field
        {"8/8/8/8/8/8/8/K1k5 white qkQK - 0", "8/8/8/8/8/8/8/K1k5 w KQkq - 0"},
        {"8/8/8/8/8/8/8/K1k5 w HAhaK-q - 0", "8/8/8/8/8/8/8/K1k5 w K - 0"},
        {"8/8/8/8/8/8/8/K1k5 b - E3 0", "8/8/8/8/8/8/8/K1k5 b - e3 0"},
        {"8/qqqqqqqqqq/8/8/8/8/8/K1k5 w - - 0", "8/qqqqqqqq/8/8/8/8/8/K1k5 w - - 0"},
    };
    for (const auto& [text, fen] : cases) {
        const Position position = positionOf(text);
        EXPECT_EQ(getFen(position), fen) << text;
        EXPECT_EQ(findDifference(position, positionOf(fen)), "") << text; // also off the board
    }
    EXPECT_EQ(positionOf("8/8/8/8/4P3/8/8/K1k5 b - e3 0").incremental.epField, E4);
    EXPECT_EQ(positionOf("8/8/8/3p4/8/8/8/K1k5 w - d6 0").incremental.epField, D5);
}

TEST(Fen, ClockLeavesRoomToCountOn) {
    for (const char* clock : {"2147483647", "99999999999999999999"}) {
        Position position = positionOf("8/8/8/8/8/8/8/K1k5 w - - " + std::string(clock));
        EXPECT_GT(position.incremental.halfMoveClock, 100'000);
        EXPECT_LT(position.incremental.halfMoveClock, std::numeric_limits<int>::max() - 100'000);
    }
}

TEST(PlayableFen, RejectsWhatCannotBePlayed) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "eight ranks"},
        {"4k3/8/8/8/8/8/8/4K3", "four fields"},
        {"4k3/8/8/8/8/8/8/4K3 w - ", "four fields"},
        {"4k3/8/8/8/8/8/4K3 w - - 0 1", "eight ranks"},
        {"4k3/9/8/8/8/8/8/4K3 w - - 0 1", "rank 7"},
        {"4k3//8/8/8/8/8/4K3 w - - 0 1", "rank 7"},
        {"4k3/80/8/8/8/8/8/4K3 w - - 0 1", "rank 7"},
        {"4k3/8/8/8/8/8/8/4K2 w - - 0 1", "rank 1"},
        {"4k3/8/8/8/4x3/8/8/4K3 w - - 0 1", "rank 4"},
        {"4k3/8/8/8/8/8/8/4K3/8 w - - 0 1", "rank 1"},
        {"4k3/8/8/8/8/8/8/4K3 W - - 0 1", "side to move"},
        {"4k3/8/8/8/8/8/8/8 w - - 0 1", "king"},
        {"4k2k/8/8/8/8/8/8/4K3 w - - 0 1", "king"},
        {"4k3/8/8/8/NNNN4/NNNN4/PPPPPPPP/4K3 w - - 0 1", "16 pieces"},
        {"4k3/pppppppp/nnnn4/nnnn4/8/8/8/4K3 w - - 0 1", "16 pieces"},
        {"4k2P/8/8/8/8/8/8/4K3 w - - 0 1", "pawn"},
        {"4k3/8/8/8/8/8/8/4K2p w - - 0 1", "pawn"},
        {"4k3/8/8/8/8/8/4R3/4K3 w - - 0 1", "check"},
        {"\xff\xfe/8/8/8/8/8/8/K1k5 w - - 0 1", "rank 8"},
    };
    const Position before = positionAfterMoves("e2e4");
    for (const auto& [fen, reason] : cases) {
        Position position = before;
        const std::string fault = readPlayableFen(position, fen);
        EXPECT_NE(fault.find(reason), std::string::npos) << fen << " gave \"" << fault << '"';
        EXPECT_EQ(findDifference(position, before), "") << fen;
    }
}

TEST(PlayableFen, DropsRightsThatTheBoardContradicts) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        // board, rest of the FEN, rest after reading
        {"r3k2r/8/8/8/8/8/8/R3K2R", "w KQkq - 0", "w KQkq - 0"},
        {"1r2k2r/8/8/8/8/8/8/R3K1R1", "w KQkq - 0", "w Qk - 0"},
        {"r2k3r/8/8/8/8/8/8/R3K2R", "w KQkq - 0", "w KQ - 0"},
        {"r3k2R/8/8/8/8/8/8/b3K2R", "b KQkq - 0", "b Kq - 0"},
        {"4k3/8/8/8/4P3/8/8/4K3", "b - e3 0", "b - e3 0"},
        {"4k3/8/8/3p4/8/8/8/4K3", "w - d6 0", "w - d6 0"},
        {"4k3/8/8/8/4P3/8/8/4K3", "w - e3 0", "w - - 0"}, // White has not moved last
        {"4k3/8/8/8/4N3/8/8/4K3", "b - e3 0", "b - - 0"},
        {"4k3/8/8/8/4P3/4N3/8/4K3", "b - e3 0", "b - - 0"},
        {"4k3/8/8/8/4P3/8/4n3/7K", "b - e3 0", "b - - 0"},
        {"4k3/8/8/4P3/8/8/8/4K3", "b - e4 0", "b - - 0"},
        {"4k3/8/8/8/4P3/8/8/4K3", "b - e9 0", "b - - 0"},
        {"4k3/8/8/8/4P3/8/8/4K3", "b KQkq x9 x y", "b - - 0"},
        {"4k3/8/8/8/4P3/8/8/4K3", "b - e", "b - - 0"},
        {"4k3/8/8/8/4P3/8/8/4K3", "b - - -5 0", "b - - 0"},
    };
    for (const auto& [board, given, kept] : cases) {
        Position position;
        EXPECT_EQ(readPlayableFen(position, board + std::string(" ") + given), "");
        EXPECT_EQ(getFen(position), board + std::string(" ") + kept);
        EXPECT_EQ(findInconsistency(position), "");
    }
}

TEST(PlayableFen, IgnoresExtraBlanks) {
    for (const std::string text :
         {"  4k3/8/8/8/8/8/8/4K3 w - - 7", "4k3/8/8/8/8/8/8/4K3   w -  - 7 \r\n",
          "4k3/8/8/8/8/8/8/4K3 w - - 7 12  "}) {
        Position position;
        EXPECT_EQ(readPlayableFen(position, text), "") << text;
        EXPECT_EQ(getFen(position), "4k3/8/8/8/8/8/8/4K3 w - - 7");
    }
}

// ---- Moves ----

TEST(LongAlgebraicMove, ReadsAndWritesText) {
    const std::tuple<const char*, FieldIndex, FieldIndex, PieceType, const char*> cases[] = {
        // text, from, to, promotion, text written back
        {"e2e4", E2, E4, NO_PIECE, "e2e4"},      {"A7A8Q", A7, A8, QUEEN, "a7a8q"},
        {"b7b8k", B7, B8, NO_PIECE, "b7b8"},     {"b7b8p", B7, B8, NO_PIECE, "b7b8"},
        {"e2e4 e7e5", E2, E4, NO_PIECE, "e2e4"}, {"e1g1xyz", E1, G1, NO_PIECE, "e1g1"},
    };
    for (const auto& [text, from, to, promotion, written] : cases) {
        const LongAlgebraicMove move{std::string(text)};
        EXPECT_EQ(move.getFrom(), from) << text;
        EXPECT_EQ(move.getTo(), to) << text;
        EXPECT_EQ(move.getPromotionType(), promotion) << text;
        EXPECT_EQ(move.toString(), written);
    }
}

TEST(LongAlgebraicMove, FindsItsRecordAmongMoves) {
    const std::tuple<const char*, const char*, int> cases[] = {
        // position, text, index
        {"7k/P7/8/8/8/8/8/K7 w - - 0 1", "a7a8", 3}, // without a letter the first promotion
        {"7k/P7/8/8/8/8/8/K7 w - - 0 1", "a7a8Q", 6},
        {"4k3/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1c1", 5},
        {"4k3/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1g1", 6},
        {"4k3/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1h1", -1},
        {"r3k2r/8/8/8/8/8/8/4K3 b kq - 0 1", "e8g8", 6},
        {START_FEN, "e2e5", -1},
        {START_FEN, "", -1},
        {START_FEN, "e2e9", -1},
        {START_FEN, "\xFF\xFF\xFF\xFF", -1},
    };
    for (const auto& [fen, text, expected] : cases) {
        const std::vector<Move> moves = pseudoLegalMovesOf(positionOf(fen));
        const LongAlgebraicMove move{std::string(text)};
        EXPECT_EQ(move.getIndexOfMove(moves), expected) << fen << ' ' << text;
    }
    // The squares of a castling record have no meaning.
    const Move castling = {E2, E4, PAWN, NO_PIECE, BLACK_QUEEN_SIDE, NO_PIECE};
    EXPECT_EQ(LongAlgebraicMove(std::string("e2e4")).getIndexOfMove({&castling, 1}), -1);
    EXPECT_EQ(LongAlgebraicMove(castling).toString(), "e8c8");
}

TEST(Letters, OfPawnsAreSmall) {
    for (int type = PAWN; type <= KING; ++type) {
        EXPECT_EQ(parsePiece(" prnbqk"[type]), type);
        EXPECT_EQ(parsePiece(" PRNBQK"[type]), type == PAWN ? NO_PIECE : type);
        EXPECT_EQ(parseUpperPiece(" pRNBQK"[type]), type);
    }
    EXPECT_EQ(parseUpperPiece('q'), NO_PIECE);
    EXPECT_EQ(fieldToString(A1, false), "A1");
    EXPECT_EQ(fieldToString(H8, true), "h8");
    for (const char letter : {'`', 'i', '@', 'I', '0', '9'}) {
        EXPECT_FALSE(isFile(letter) || isRow(letter)) << letter;
    }
}

std::string writtenMove(const Move& move) {
    std::ostringstream stream;
    printMove(stream, move);
    return stream.str();
}

TEST(MoveText, IsPrintedAndReadBack) {
    const std::pair<const char*, Move> cases[] = {
        {"pE2-E4", {E2, E4, PAWN, NO_PIECE, ORDINARY_MOVE, NO_PIECE}},
        {"NG1xF3", {G1, F3, KNIGHT, QUEEN, ORDINARY_MOVE, NO_PIECE}},
        {"pD7xC8Q", {D7, C8, PAWN, BISHOP, ORDINARY_MOVE, QUEEN}},
        {"0-0-0", {NO_FIELD, NO_FIELD, NO_PIECE, NO_PIECE, BLACK_QUEEN_SIDE, NO_PIECE}},
        {"0-0", {NO_FIELD, NO_FIELD, NO_PIECE, NO_PIECE, BLACK_KING_SIDE, NO_PIECE}},
    };
    for (const auto& [text, move] : cases) {
        EXPECT_EQ(writtenMove(move), text);
        const Move read = parseMove(text, BLACK);
        EXPECT_EQ(read.castle_ep_flag, move.castle_ep_flag) << text;
        if (!move.isCastle()) {
            Move expected = move;
            expected.pieceCaptured =
                move.pieceCaptured == NO_PIECE ? NO_PIECE : static_cast<PieceType>(7);
            EXPECT_TRUE(testMoveEquality(read, expected)) << text;
        }
    }
    EXPECT_EQ(parseMove("0-0", WHITE).castle_ep_flag, WHITE_KING_SIDE);
    EXPECT_EQ(parseMove("0-0-0", EMPTY).castle_ep_flag, BLACK_QUEEN_SIDE);
    EXPECT_EQ(parseMove("pe5xd6(e.p.)", WHITE).castle_ep_flag, EN_PASSANT);
    const Move enPassant = {E5, D6, PAWN, PAWN, EN_PASSANT, NO_PIECE};
    EXPECT_EQ(writtenMove(enPassant), "pE5xD6(e.p)");
}

TEST(MoveText, MayBeShortOrWrong) {
    for (const std::string text : {"", "p", "pE", "pE2", "pE2-", "pE2-E", "xi9-zz"}) {
        EXPECT_EQ(parseMove(text, WHITE).to, NOT_FOUND) << text;
    }
    testing::internal::CaptureStderr();
    EXPECT_EQ(printed([] { parseMove("pE2=E4", WHITE); }), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "parsing error, '-' expected\n");
    // An invalid piece type.
    EXPECT_EQ(writtenMove(parseMove("xe2-e4", WHITE)), "?E2-E4");
}

TEST(MoveCode, NamesExactlyOneMoveOfAPosition) {
    struct Case {
        std::string fen;
        std::map<std::string, int> codes; // of some of its moves
    };
    for (const auto& [fen, codes] : std::initializer_list<Case>{
             {START_FEN, {{"e2e4", 796}, {"g1f3", 405}}},
             {"r3k2r/8/8/2pP4/8/8/8/R3K2R w KQkq c6 0 1", {{"e1g1", 263}, {"d5c6", 2282}}},
             {"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", {{"e8c8", 3896}}},
             {"1r6/P3P2k/8/8/8/8/8/K7 w - - 0 1", {{"e7e8q", 19772}, {"a7a8n", 7224}}}}) {
        const std::vector<Move> moves = pseudoLegalMovesOf(positionOf(fen));
        for (int i = 0; i < static_cast<int>(moves.size()); ++i) {
            const PolyglotEntry entry(moves[at(i)]);
            EXPECT_EQ(entry.getMove(moves), i);
            EXPECT_EQ(entry.getMove(std::span(moves).first(at(i))), -1);
        }
        for (const auto& [text, code] : codes) {
            const Move move = moveOf(positionOf(fen), text);
            EXPECT_EQ(PolyglotEntry::getIntRepresentation(move), code) << text;
        }
    }
}

// ---- Diagrams ----

TEST(Diagram, ShowsEverySquareWithWhiteAtTheBottom) {
    const Position position = positionOf("k7/8/8/8/8/8/8/K5Q1 w - - 0 1");
    std::ostringstream stream;
    stream << position;
    const std::string text = stream.str();
    ASSERT_EQ(text.size(), 8 * 4 * (8 * 6 + 1));
    EXPECT_EQ(text.substr(49, 7), "  CK  \xDB");
    EXPECT_EQ(text.substr(29 * 49 + 36, 7), "\xDB BQ \xDB ");
    EXPECT_EQ(printed([&] { printPosition(position); }), text);
    EXPECT_TRUE(
        printed([&] { printPieces(position); }).starts_with("0K-21  1Q-27  20-0  30-0  \n4"));
}

} // namespace
