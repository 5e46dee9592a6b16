// Generating, making and unmaking moves, and the test for check.
#include "base/cppIoUtils.h"
#include "board/attacks.h"
#include "board/pseudoLegalMoves.h"
#include "support/plainRules.h"
#include "testing/boardSupport.h"

#include <gtest/gtest.h>
#include <map>

namespace {

#ifdef KESTRAN_SLOW_BUILD
constexpr long MOST_SEQUENCES = 10'000;
constexpr int TWIN_DEPTH = 2;
#else
constexpr long MOST_SEQUENCES = 5'000'000;
constexpr int TWIN_DEPTH = 3;
#endif

// ---- Counting move sequences ----

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

// ---- Against the plain twin ----

void expectLikeTwin(Position& position, const plain::Position& twin) {
    const std::string fen = getFen(position);
    EXPECT_EQ(sorted(textsOf(legalMovesOf(position))), twin.legalMoves()) << fen;
    EXPECT_EQ(at(PseudoLegalMoves(position).getCount()), pseudoLegalMovesOf(position).size())
        << fen;
    EXPECT_EQ(isInCheck(position), twin.isInCheck()) << fen;
    EXPECT_EQ(isInMate(position), twin.isInCheck() && twin.legalMoves().empty()) << fen;
    const std::string identity = twin.identity();
    EXPECT_TRUE(fen.starts_with(identity.substr(0, identity.rfind(' ')))) << fen << identity;
    EXPECT_EQ(position.incremental.halfMoveClock, twin.clock) << fen;
}

using KeysByIdentity = std::map<std::string, std::uint64_t>;

void walkWithTwin(Position position, const plain::Position& twin, int depth, KeysByIdentity& keys) {
    expectLikeTwin(position, twin);
    const auto [entry, isNew] = keys.try_emplace(twin.identity(), position.incremental.hash);
    EXPECT_EQ(entry->second, position.incremental.hash) << entry->first;
    for (const std::string& move : depth > 0 ? twin.legalMoves() : std::vector<std::string>()) {
        Position next = position;
        plain::Position nextTwin = twin;
        play(next, move);
        ASSERT_TRUE(nextTwin.play(move));
        walkWithTwin(next, nextTwin, depth - 1, keys);
    }
}

// Also: two positions have the same key exactly if board, side to move, castling rights and a
// possible en passant capture are the same.
TEST(PlainTwin, HasTheSameMovesAndPositions) {
    KeysByIdentity keys;
    for (const PerftLine& line : readPerftLines()) {
        walkWithTwin(positionOf(line.fen), plain::Position(line.fen), 1, keys);
    }
    // En passant captures that become possible, expire, or are pinned.
    for (const char* fen :
         {"4k3/2p1p3/8/1P1P1P2/2p1p3/8/1P1P4/4K3 w - - 3 1",
          "r3k2r/8/8/8/1p4p1/8/P6P/R3K2R w KQkq - 0 1", "4k3/3p4/8/1KP4r/8/8/8/8 b - - 0 1"}) {
        walkWithTwin(positionOf(fen), plain::Position(fen), TWIN_DEPTH, keys);
    }
    std::map<std::uint64_t, std::string> identities;
    for (const auto& [identity, key] : keys) {
        EXPECT_EQ(identities.try_emplace(key, identity).first->second, identity);
    }
}

TEST(Symmetry, MirroredPositionsHaveMirroredMoves) {
    for (const PerftLine& line : readPerftLines()) {
        Position position = positionOf(line.fen);
        Position mirror = positionOf(mirrorFen(line.fen));
        std::vector<std::string> expected = textsOf(pseudoLegalMovesOf(position));
        std::ranges::transform(expected, expected.begin(), mirrorMove);
        EXPECT_EQ(sorted(textsOf(pseudoLegalMovesOf(mirror))), sorted(expected)) << line.fen;
        EXPECT_EQ(isInCheck(mirror), isInCheck(position)) << line.fen;
        EXPECT_EQ(mirror.incremental.material[BLACK], position.incremental.material[WHITE])
            << line.fen;
    }
}

// ---- The order of generation ----

TEST(GenerationOrder, FollowsListAndOffsets) {
    const std::pair<const char*, const char*> cases[] = {
        {START_FEN, "a2a3 a2a4 b2b3 b2b4 c2c3 c2c4 d2d3 d2d4 e2e3 e2e4 f2f3 f2f4 g2g3 g2g4 "
                    "h2h3 h2h4 b1a3 b1c3 g1f3 g1h3"},
        {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1",
         "e1d1 e1f1 e1e2 e1f2 e1d2 e1c1 e1g1 "
         "a1b1 a1c1 a1d1 a1a2 a1a3 a1a4 a1a5 a1a6 a1a7 a1a8 "
         "h1h2 h1h3 h1h4 h1h5 h1h6 h1h7 h1h8 h1g1 h1f1"},
        // The queen's rays come in the king's order. The king's moves into attack are included.
        {"7k/8/5p2/2p5/1n1Q4/4p3/8/K7 w - - 0 1",
         "a1b1 a1a2 a1b2 d4c4 d4b4 d4e4 d4f4 d4g4 d4h4 d4d3 d4d2 d4d1 d4d5 d4d6 d4d7 d4d8 "
         "d4c3 d4b2 d4e5 d4f6 d4e3 d4c5"},
        // Promotions to knight, bishop, rook, queen; first ahead, then towards a, then h.
        {"r1n5/1P6/8/8/8/8/8/k1K5 w - - 0 1",
         "c1b1 c1d1 c1c2 c1d2 c1b2 b7b8n b7b8b b7b8r b7b8q b7a8n b7a8b b7a8r b7a8q "
         "b7c8n b7c8b b7c8r b7c8q"},
        {"K1k5/8/8/8/8/8/1p6/R1N5 b - - 0 1",
         "c8b8 c8d8 c8c7 c8b7 c8d7 b2b1n b2b1b b2b1r b2b1q b2a1n b2a1b b2a1r b2a1q "
         "b2c1n b2c1b b2c1r b2c1q"},
        // En passant is the last move of a pawn, whichever pawn captures.
        {"7k/8/5n2/2PpP3/8/8/8/7K w - d6 0 2", "h1g1 h1h2 h1g2 c5c6 c5d6 e5e6 e5f6 e5d6"},
        {"7k/8/8/8/4Pp2/6B1/8/7K b - e3 0 1", "h8g8 h8h7 h8g7 f4f3 f4g3 f4e3"},
        {"7k/8/8/8/4N3/8/1R6/7K w - - 0 1",
         "h1g1 h1h2 h1g2 b2c2 b2d2 b2e2 b2f2 b2g2 b2h2 b2b3 b2b4 b2b5 b2b6 b2b7 b2b8 b2a2 b2b1 "
         "e4d6 e4f6 e4c5 e4g5 e4g3 e4c3 e4f2 e4d2"},
        {"7k/8/8/8/3b4/8/1N6/7K b - - 0 1",
         "h8g8 h8h7 h8g7 d4c5 d4b6 d4a7 d4e5 d4f6 d4g7 d4e3 d4f2 d4g1 d4c3 d4b2"},
    };
    for (const auto& [fen, moves] : cases) {
        EXPECT_EQ(textsOf(pseudoLegalMovesOf(positionOf(fen))), splitString(moves)) << fen;
    }
}

// ---- The rest of the state ----

TEST(DoMove, CountsCastlingsForTheirColour) {
    Position position = positionOf("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 5 1");
    play(position, "e1g1");
    EXPECT_EQ(position.incremental.moveEvaluation, 10);
    EXPECT_EQ(position.incremental.halfMoveClock, 6);
    play(position, "e8c8");
    EXPECT_EQ(position.incremental.moveEvaluation, 0);
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
