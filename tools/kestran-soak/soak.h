// Plays games between engines over pipes and checks every move, line and clock. Each job is a
// thread that plays one game at a time and sleeps while an engine thinks.
#pragma once

#include "kestran-soak/player.h"
#include "support/matchScore.h"

#include <chrono>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

struct SoakReport {
    std::vector<GameRecord> games{};
    std::vector<std::string> quitFaults{}; // of engines after their last game
    int resumed = 0;                       // games that were read from the state file

    // Games with that fault; faults after the last game count as PROTOCOL.
    std::int64_t count(Fault::Kind kind) const;
    // The most of a number of a game.
    std::int64_t getMost(std::int64_t GameRecord::*member) const;
    // No fault, and no more growth of memory than is allowed.
    bool isClean() const;
    MatchScore getScore() const;
};

struct SoakOptions {
    GameOptions game{};
    PlayerOptions engine{};
    std::optional<PlayerOptions> against{}; // the opponent in a match
    int games = 1;
    int first = 0;              // number of the first game
    int jobs = 1;               // games at a time
    std::optional<Sprt> sprt{}; // ends a match when it is decided
    std::string records = ".";  // folder for the records of games with a fault
    std::string state{};        // file that keeps the games, empty for none
    // Called after each game with all that is known so far.
    std::function<void(const SoakReport&)> onGame = [](const SoakReport&) {};
    // Whether to stop now; asked before each game and each move.
    std::function<bool()> isStopWanted = [] { return false; };
};

// Whether the engine under test has White. Games 2n and 2n + 1 are a pair of a match.
constexpr bool hasEngineWhite(int game) {
    return game % 2 == 0;
}

// Plays the games that the state file does not hold yet. A match with an SPRT ends when that is
// decided; a game that was stopped is dropped. The games of the report are sorted by number. Throws
// UsageError if an engine cannot be started or the state file is of no use, std::runtime_error if
// it cannot be written.
SoakReport runSoak(const SoakOptions& options);

// The last line is for scripts: "summary" and pairs NAME=VALUE. `elapsed` is that of this run.
void writeReport(std::ostream& stream, const SoakReport& report, const SoakOptions& options,
                 std::chrono::seconds elapsed);
