// What the user wants of a soak.
#pragma once

#include "kestran-soak/timeControl.h"

#include <functional>
#include <string>
#include <vector>

struct SoakOptions {
    std::string engine{};                 // path of the program
    std::vector<std::string> arguments{}; // its arguments
    int games = 1;
    int first = 0;     // number of the first game, which decides all about it
    int plies = 300;   // of the longest game
    unsigned seed = 1; // of the openings
    int jobs = 1;      // processes side by side
    // Before each `go` a random time of up to so many milliseconds passes, so that engines that
    // sleep most of their time do not wake at the same moment again and again.
    int pause = 0;
    // The ways to measure time, which go round by the number of the game.
    std::vector<TimeControl> times = {parseTimeControl("1/0.12"), parseTimeControl("2+0.1"),
                                      parseTimeControl("40/5")};
    // The sizes of the table in MiB, which go round in groups of all ways to measure time.
    std::vector<int> hashes = {192, 16};
    int margin = 100; // milliseconds that a clock may be overrun without a loss
    int grace = 150;  // milliseconds by which an answer may be later than its `movetime`
    // The folder, made if need be, for the record of a fault: where the game stands, its
    // moves, and all that has been said in it.
    std::string records = ".";
    // The file that keeps what has been played, to go on from another time; empty for none.
    std::string state{};
    // Asked before each move: whether to end here, with the games as they are. May be empty.
    std::function<bool()> isStopWanted{};

    // The options that decide how a game goes, apart from its number and the engine, as the
    // user writes them; those that differ from the defaults.
    std::string describeGames() const;
};
