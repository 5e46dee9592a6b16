// Whole games of the built engine against itself, two processes with a clock between
// them, for each way of giving time. A talk checks the form and the place of every line
// that an engine sends (see uciTalk.h).

#include "support/naiveRules.h"
#include "testing/uciTalk.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <ostream>
#include <string>

namespace {

constexpr int MAX_PLIES = 60;

// Times in milliseconds, 0 for what is not given.
struct TimeControl {
    const char* name;
    int base;
    int increment;
    int moves; // to be made in the time of `base`
    int fixed; // for each move
};

void PrintTo(const TimeControl& control, std::ostream* stream) {
    *stream << control.name;
}

class Game {
public:
    explicit Game(const TimeControl& _control)
        : control(_control), clocks({control.base, control.base}) {
        for (UciTalk& player : players) {
            player.hold(
                "> uci | greet 192 | > setoption name Hash value 16 | > ucinewgame | ready");
        }
    }

    bool isOver() const { return plies == MAX_PLIES || board.getLegalMoves().empty(); }

    void playMove() {
        UciTalk& player = players[mover()];
        player.say(position());
        player.expectReady();
        player.say(goLine());
        player.expectAnswer("*", 0, 5000);
        player.expectLegal(board);
        const std::string& move = player.getAnswer().bestMove;
        EXPECT_TRUE(board.play(move)) << move;
        pressClock(player.getAnswer().age);
        moves += ' ' + move;
        ++plies;
    }

    // The loser and the one who is stalemated know it too.
    void finish() {
        if (board.getLegalMoves().empty()) {
            players[mover()].hold("> " + position() + " | > go depth 1 | answer \\(none\\)");
        }
    }

private:
    std::size_t mover() const { return static_cast<std::size_t>(plies % 2); }

    std::string position() const {
        return "position startpos" + (moves.empty() ? "" : " moves" + moves);
    }

    std::string goLine() const {
        if (control.fixed > 0) {
            return "go movetime " + std::to_string(control.fixed);
        }
        std::string line =
            "go wtime " + std::to_string(clocks[0]) + " btime " + std::to_string(clocks[1]);
        if (control.increment > 0) {
            const std::string increment = std::to_string(control.increment);
            line += " winc " + increment + " binc " + increment;
        }
        if (control.moves > 0) {
            line += " movestogo " + std::to_string(control.moves - plies / 2 % control.moves);
        }
        return line;
    }

    // What a slow build takes longer by is not counted.
    void pressClock(Millis age) {
        const auto taken =
            static_cast<int>(std::max(age - patience(100) + Millis(100), Millis(0)).count());
        if (control.fixed > 0) {
            EXPECT_LE(taken, control.fixed + 150) << "after " << moves;
            return;
        }
        int& clock = clocks[mover()];
        clock -= taken;
        EXPECT_GT(clock, 0) << "the flag falls after " << moves;
        clock += control.increment;
    }

    TimeControl control;
    std::array<int, 2> clocks; // milliseconds left, White's first
    std::array<UciTalk, 2> players;
    NaiveBoard board;
    std::string moves; // with a blank before each
    int plies = 0;
};

class GameTest : public testing::TestWithParam<TimeControl> {};

TEST_P(GameTest, IsPlayedByTheRulesAndInTime) {
    Game game(GetParam());
    while (!game.isOver() && !HasFailure()) {
        game.playMove();
    }
    game.finish();
}

INSTANTIATE_TEST_SUITE_P(TimeControls, GameTest,
                         testing::Values(TimeControl{"Increment", 2000, 100, 0, 0},
                                         TimeControl{"SuddenDeath", 5000, 0, 0, 0},
                                         TimeControl{"MovesInTime", 5000, 0, 40, 0},
                                         TimeControl{"FixedTime", 0, 0, 0, 120}),
                         [](const auto& row) { return row.param.name; });

} // namespace
