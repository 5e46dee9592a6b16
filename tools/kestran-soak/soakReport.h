// What a soak has seen, of all its games together.
#pragma once

#include "kestran-soak/checkedGame.h"
#include "kestran-soak/playedGame.h"
#include "kestran-soak/timeControl.h"

#include <chrono>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

// What a process has left when it ended.
struct EngineResult {
    // Resident KiB: after its first game; the most after one of its first games, in which it
    // touches what it has for the first time; after its last. Each time with the smallest table,
    // so that what the table touches plays no part. 0 without a game.
    std::int64_t first = 0;
    std::int64_t settled = 0;
    std::int64_t last = 0;
    std::string fault{}; // against the protocol, outside its games; empty for none
};

struct SoakReport {
    int games = 0;   // that have been played to their end, or stopped
    int resumed = 0; // those of them that a run before this one has played
    int stopped = 0; // those that were stopped
    std::int64_t plies = 0;
    int whiteWins = 0;
    int blackWins = 0;
    int draws = 0;
    int unfinished = 0; // games of the greatest length, and those that were stopped
    // One text for each fault, which ends in the file that holds its record.
    std::vector<std::string> timeLosses;
    std::vector<std::string> illegalMoves;
    std::vector<std::string> protocolFaults;
    std::vector<std::string> overruns; // of a clock, within the margin: no faults
    std::int64_t starved = 0;          // answers that were late without being the engine's fault
    std::map<std::string, Lateness> lateness; // of the answers, by how time was measured
    std::vector<EngineResult> engines;
    std::vector<PlayedGame> record; // every game
    // The longest time in milliseconds for which nobody looked at the engines though it was
    // time to.
    std::int64_t longestAway = 0;

    void add(const GameResult& result);
    void add(const EngineResult& result);
    std::size_t countFaults() const; // without the growth of memory
    // The most that a process has gained in its first games, and after them, in KiB.
    std::int64_t getSettling() const;
    std::int64_t getGrowth() const;
    bool isClean() const;
};

// The report for a person. Ends in one line for a script: "summary", and pairs NAME=VALUE.
// `elapsed` is the time of this run.
void writeReport(std::ostream& stream, const SoakReport& report, std::chrono::seconds elapsed);
