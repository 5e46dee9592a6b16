// One place of a soak: an engine that plays against itself, game after game in the same
// process, until there is no game left. A new process takes the place of one that breaks.
#pragma once

#include "kestran-soak/answer.h"
#include "kestran-soak/checkedGame.h"
#include "kestran-soak/outputWatch.h"
#include "kestran-soak/player.h"
#include "kestran-soak/soakOptions.h"
#include "kestran-soak/soakReport.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

// Where the games come from and go to.
class SoakDesk {
public:
    virtual ~SoakDesk() = default;
    // The number of a game that nobody plays yet, or nothing if there is none left.
    virtual std::optional<int> takeNumber() = 0;
    // To be asked before each move: whether to end here.
    virtual bool isStopWanted() = 0;
    // A game that has come to its end; `isStopped` if it has not.
    virtual void add(const GameResult& result, bool isStopped) = 0;
    virtual void add(const EngineResult& result) = 0;
    // What else is to be told about the answer that is just looked at.
    virtual std::string describeCircumstances() = 0;
    // Milliseconds, since the soak began, in which nobody looked at the engines though it was
    // time to: there was work, or the whole machine stood still.
    virtual std::int64_t getAway() = 0;
};

class SelfPlay {
public:
    using Clock = Player::Clock;

    // All arguments must outlive the object. `id` is its name at `watch`.
    SelfPlay(const SoakOptions& soakOptions, SoakDesk& soakDesk, OutputWatch& outputWatch,
             std::size_t _id);

    // Takes what has come from the engine, and when; acts on nothing yet.
    void listen();
    // Goes as far as is possible without waiting: after listen(), at getWakeTime(), and once
    // to begin. CannotStart if there is no engine.
    void advance();
    // When advance() is due if nothing comes until then.
    Clock::time_point getWakeTime() const { return wakeTime; }

    // The engine has not yet answered its first line.
    bool isStarting() const { return phase == Phase::GREETING; }
    bool isDone() const { return phase == Phase::DONE; }

private:
    // What is awaited.
    enum class Phase {
        IDLE,      // nothing: the first game
        GREETING,  // the answer to `uci`
        SETTING,   // `readyok` behind a position
        PAUSING,   // nothing: the time for the next `go`
        THINKING,  // the answer to a `go` of the game
        SHRINKING, // the answer to a `go` that puts the smallest table in force
        RESTING,   // `readyok` behind that
        BREAKING,  // the last words of an engine with a fault
        LEAVING,   // the end of the process behind `quit`
        DONE
    };

    void enter(Phase next, std::chrono::milliseconds patience);
    // Nobody tells when a process ends, so it is asked again and again.
    void waitForEnd();
    // Time has come to act, though nothing was heard.
    void wake();
    void hear(const std::string& line);
    void hearGreeting(const std::string& line);
    void hearAnswer(const std::string& line);

    void beginGame();
    void greet();
    void setUp();
    // The next move, or the end of the game.
    void proceed();
    void pause(); // then think()
    void think();
    void takeAnswer();
    // Measures the memory.
    void shrink();
    void endGame();
    void leave();
    void expectEnd();
    void breakOff(const std::string& fault);
    void endBroken();

    // Leaves what was found, and all that is known of it, in a file. Returns where,
    // in words.
    std::string writeRecord(const std::string& name, const std::string& found);

    const SoakOptions& options;
    SoakDesk& desk;
    OutputWatch& watch;
    std::size_t id;

    Phase phase = Phase::IDLE;
    Clock::time_point wakeTime = Clock::now();
    Clock::time_point deadline = wakeTime; // of what is awaited
    std::unique_ptr<Player> player;        // null while there is no sound engine
    std::unique_ptr<CheckedGame> game;     // null between two games
    bool isStopped = false;                // the game has been stopped
    std::size_t greeted = 0;               // lines
    const Dialect* dialect = &KESTRAN;     // of the present engine
    std::vector<std::string> answer;       // so far
    Clock::time_point asked;               // when the `go` was sent
    std::int64_t awayBefore = 0;           // getAway() then
    std::string fault;                     // of the engine that is breaking
    EngineResult memory;
    int gamesOfEngine = 0;   // that the present engine has played
    std::minstd_rand random; // for the pauses
};
