// The long run: an engine plays against itself over pipes, game after game in the same
// process, and every word of it is checked by the rules of the protocol, of chess and of
// the clock.
#pragma once

#include "kestran-soak/pgn.h"

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
    long margin = 100; // milliseconds that a clock may be overrun without a loss
    // The folder, made if need be, for the record of a fault: where the game stands, its
    // moves, and all that has been said in it.
    std::string records = ".";
    // Asked before each move, by any thread: whether to end here, with the games as they
    // are. May be empty.
    std::function<bool()> isStopWanted{};
};

// What has been seen, of one game or of many.
struct SoakReport {
    int games = 0; // that have been played to their end
    int plies = 0;
    int whiteWins = 0;
    int blackWins = 0;
    int draws = 0;
    int unfinished = 0; // games of the greatest length, and those that were stopped
    // One text for each fault, which ends in the file that holds its record.
    std::vector<std::string> timeLosses;
    std::vector<std::string> illegalMoves;
    std::vector<std::string> protocolFaults;
    std::vector<std::string> overruns; // of a clock, within the margin: no faults
    // The longest time in milliseconds by which an answer came later than `movetime`.
    long latest = 0;
    // Per process: the resident KiB after its first and after its last game, each time
    // with the smallest table, so that what the table touches plays no part.
    struct Memory {
        long first = 0;
        long last = 0;
    };
    std::vector<Memory> memory;
    std::vector<PlayedGame> record; // every game, by number

    bool isClean() const;
    void add(const SoakReport& other);
};

// Plays the games. The way to measure time goes round by game: a fixed time for a move,
// a clock with an increment, a clock for forty moves. `onGame` is called after each game,
// by one thread at a time, with all that has been seen so far. Throws CannotStart if
// the engine cannot be started.
SoakReport runSoak(const SoakOptions& options,
                   const std::function<void(const SoakReport&)>& onGame = {});
