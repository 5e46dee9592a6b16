// Moves in standard algebraic notation.

#include "notation/san.h"
#include "testing/boardSupport.h"

#include <array>
#include <gtest/gtest.h>

namespace {

const std::string castlings =
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1";
const std::string promotion = "1n5k/P7/8/8/8/8/8/K7 w - - 0 1";
const std::string twins = "6k1/8/8/8/8/8/4K3/R6R w - - 0 1";

TEST(San, WritesMovesAsPlayersDo) {
    const std::vector<std::array<std::string, 3>> cases = {
        {START_FEN, "g1f3", "Nf3"},
        {castlings, "e1g1", "O-O"},
        {castlings, "e1c1", "O-O-O"},
        {"4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", "e5d6", "exd6"},
        {"7k/P7/8/8/8/8/8/K7 w - - 0 1", "a7a8q", "a8=Q+"},
        {promotion, "a7b8n", "axb8=N"},
        {"6k1/5ppp/8/8/8/8/8/R3K2R w K - 0 1", "a1a8", "Ra8#"},
        {twins, "a1d1", "Rad1"},
        {"R7/7k/8/8/8/8/4K3/R7 w - - 0 1", "a1a4", "R1a4"},
        {"8/7k/8/Q3Q3/8/8/4K3/Q7 w - - 0 1", "a5c3", "Qa5c3"},
        // The twin is pinned, so it needs no telling apart.
        {"4r2k/8/8/8/8/4N3/8/N3K3 w - - 0 1", "a1c2", "Nc2"},
    };
    for (const auto& [fen, move, text] : cases) {
        const Position position = positionOf(fen);
        EXPECT_EQ(toSan(position, moveOf(position, move)), text) << fen;
    }
}

TEST(San, ReadsWhatItWrites) {
    for (const PerftLine& line : readPerftLines()) {
        const Position position = positionOf(line.fen);
        for (const Move& move : legalMovesOf(position)) {
            const std::vector<Move> found = findMoves(position, toSan(position, move));
            ASSERT_EQ(found.size(), 1U) << line.fen << ' ' << toSan(position, move);
            EXPECT_TRUE(testMoveEquality(found.front(), move));
        }
    }
}

TEST(San, ReadsWhatPlayersWrite) {
    // FEN, text, and the moves that it may mean.
    const std::vector<std::array<std::string, 3>> cases = {
        {castlings, "0-0", "e1g1"},
        {castlings, "0-0-0!?", "e1c1"},
        {castlings, "e1g1", "e1g1"},
        {castlings, "0-O", ""},
        {castlings, "e1-g1", "e1g1"},
        {castlings, "Ke1g1", ""},
        {"4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", "exd6e.p.", "e5d6"},
        {"4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", "e5xd6+ep", "e5d6"},
        {castlings, "Ne5xd7+", "e5d7"},
        {castlings, "Nxd3", ""},
        {castlings, "e6", ""},
        {castlings, "de6", "d5e6"},
        {castlings, "Bxa6", "e2a6"},
        {promotion, "a8=Q+", "a7a8q"},
        {promotion, "axb8N!", "a7b8n"},
        {promotion, "a7b8n", "a7b8n"},
        {promotion, "a8", ""},
        {promotion, "a8=K", ""},
        {promotion, "Ka8", ""},
        {twins, "Rd1", "a1d1 h1d1"},
        {twins, "Rad1?!", "a1d1"},
        {twins, "R1b1", "a1b1 h1b1"},
        {twins, "rd1", ""},
        {twins, "", ""},
        {twins, "Rad1x", ""},
    };
    for (const auto& [fen, text, moves] : cases) {
        std::string found;
        for (const std::string& move : textsOf(findMoves(positionOf(fen), text))) {
            found += (found.empty() ? "" : " ") + move;
        }
        EXPECT_EQ(found, moves) << fen << ' ' << text;
    }
}

} // namespace
