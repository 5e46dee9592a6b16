// One game of the soak by the rules of chess and of the clock. It knows no engine.
#pragma once

#include "kestran-soak/playedGame.h"
#include "kestran-soak/soakOptions.h"
#include "kestran-soak/timeControl.h"
#include "support/naiveRules.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

// Something that was noticed in a game. All but an overrun is a fault.
struct Finding {
    enum class Kind { TIME_LOSS, ILLEGAL_MOVE, PROTOCOL_FAULT, OVERRUN };

    Kind kind;
    std::string text; // one line for a person

    bool isFault() const { return kind != Kind::OVERRUN; }
};

// The text without line ends and their like; the words of an engine may hold anything.
std::string toOneLine(std::string text);

// The texts of the faults, empty if there is none.
std::string joinFaults(const std::vector<Finding>& findings);

// A game that has been played, and all that it adds to a report.
struct GameResult {
    PlayedGame game;
    int plies = 0;   // without the opening
    int starved = 0; // answers that were late without being the engine's fault
    Lateness lateness{};
    std::vector<Finding> findings{};
};

class CheckedGame {
public:
    // The game of that number, which decides all about it, behind its opening.
    CheckedGame(const SoakOptions& soakOptions, int number);

    // Whether it has come to its end; a fault may be the end.
    bool isOver() const { return isEnded; }
    // The size of the engine's table in MiB.
    int getHash() const { return hash; }
    const NaiveBoard& getBoard() const { return board; }
    // What to tell the engine, for the side to move.
    std::string getPositionLine() const;
    std::string getGoLine() const { return clocks.getGoLine(); }
    // Milliseconds that the side to move has.
    std::int64_t getAllowed() const { return clocks.getAllowed(); }

    // Whether an answer after `used` milliseconds is too late, as far as the clock tells.
    bool isTooLate(std::int64_t used) const;
    // The side to move has answered after `used` milliseconds. Being late by no more than
    // `excuse` beyond what is allowed costs nothing: for so long the engine had no processor,
    // or nobody looked. `circumstances` goes into the text of what is found wrong.
    void take(const std::string& move, std::int64_t used, std::int64_t excuse,
              const std::string& circumstances);
    // A fault against the protocol. It ends the game, unless that has ended before.
    void breakOff(const std::string& fault);
    // Ends the game without a result.
    void stop() { isEnded = true; }

    const GameResult& getResult() const { return result; }
    // How to come back to where the game stands, for a person: some lines.
    std::string describe() const;

private:
    // Milliseconds that an answer may be late.
    std::int64_t getTolerance() const;
    void playOpening();
    void play(const std::string& move);
    // Ends the game if the rules do.
    void judge();
    // The side to move has lost.
    void lose(const std::string& termination);
    void draw();
    void find(Finding::Kind kind, const std::string& text);

    const SoakOptions& options;
    TimeControl control;
    int hash;
    NaiveBoard board;
    std::vector<std::string> legal; // moves on the board
    Clocks clocks;
    std::map<std::string, int> occurrences; // of positions, by what counts as the same
    bool isEnded = false;
    GameResult result;
};
