// A whole game of the built engine against itself, two processes with a clock between them.
// A talk checks the form and the place of every line that an engine sends (see uciTalk.h).

#include "support/plainRules.h"
#include "testing/uciTalk.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>

namespace {

constexpr int MAX_PLIES = 40;
constexpr int BASE = 2000; // milliseconds
constexpr int INCREMENT = 100;

TEST(GameTest, IsPlayedByTheRulesAndInTime) {
    std::array<UciTalk, 2> players;
    for (UciTalk& player : players) {
        player.hold("> uci | greet 192 | > setoption name Hash value 16 | > ucinewgame | ready");
    }
    std::array<int, 2> clocks = {BASE, BASE}; // milliseconds left, White's first
    plain::Position board;
    std::string position = "position startpos moves";
    std::size_t mover = 0;
    for (int ply = 0; ply < MAX_PLIES && !board.legalMoves().empty() && !HasFailure(); ++ply) {
        UciTalk& player = players[mover];
        player.say(position);
        player.expectReady();
        player.say("go wtime " + std::to_string(clocks[0]) + " btime " + std::to_string(clocks[1]) +
                   " winc " + std::to_string(INCREMENT) + " binc " + std::to_string(INCREMENT));
        player.expectAnswer("*", 0, 5000);
        player.expectLegal(board);
        const std::string& move = player.getAnswer().bestMove;
        EXPECT_TRUE(board.play(move)) << move;
        position += ' ' + move;
        // The extra time of a slow build is not counted.
        const Millis taken = player.getAnswer().age - patience(100) + Millis(100);
        clocks[mover] -= static_cast<int>(std::max(taken, Millis(0)).count());
        EXPECT_GT(clocks[mover], 0) << "the flag falls after " << position;
        clocks[mover] += INCREMENT;
        mover = 1 - mover;
    }
    // The side that is mated or stalemated answers that it has no move.
    if (board.legalMoves().empty()) {
        players[mover].hold("> " + position + " | > go depth 1 | answer \\(none\\)");
    }
}

} // namespace
