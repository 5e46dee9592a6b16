// One game by the rules of chess and of the clock. It knows no engine. Times are in milliseconds.
#pragma once

#include "support/plainRules.h"

#include <array>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

// What both sides have for their moves.
struct TimeControl {
    int moves = 0;              // after which `clock` is added again; 0 for never
    std::int64_t clock = 0;     // at the start; of each move if `isPerMove`
    std::int64_t increment = 0; // after each move

    bool isPerMove() const { return moves == 1 && increment == 0; }
};

// Reads [MOVES/]SECONDS[+INCREMENT]: "1/0.001" is a millisecond for each move, "40/5" five seconds
// for every forty. Throws UsageError for any other text.
TimeControl parseTimeControl(const std::string& text);

// What to play.
struct GameOptions {
    bool isMatch = false; // games come in pairs with the same opening, time and table
    int seed = 1;         // of the openings
    int plies = 300;      // a game of this length is a draw
    int margin = 150;     // by which a move may exceed its time
    // Used in turn, each time control with each table size (in MiB).
    std::vector<std::string> times = {"1/0.12", "2+0.1", "40/5"};
    std::vector<int> hashes = {192, 16};
};

// Something that an engine did wrong.
struct Fault : std::runtime_error {
    enum Kind { NONE, TIME_LOSS, ILLEGAL_MOVE, PROTOCOL } kind;

    Fault(Kind _kind, const std::string& text) : std::runtime_error(text), kind(_kind) {}
};

// A game as the report and the state file have it.
struct GameRecord {
    int number = 0;
    std::string white{}; // the engine
    std::string black{};
    std::string result = "*";  // as in PGN; "*" while the game is played
    std::string termination{}; // in the terms of PGN
    std::string timeControl{};
    std::string fen{};     // where the game began, empty for the start position
    std::string moves{};   // in long algebraic notation, by blanks
    std::string comment{}; // after the last move; describes the fault
    int plies = 0;         // after the opening
    // How many moves exceeded their time by how much. Moves in time are at 0.
    std::map<std::int64_t, std::int64_t> overruns{};
    // KiB that an engine had gained by then: in its first ten games, and since.
    std::int64_t settling = 0;
    std::int64_t growth = 0;
    int fault = Fault::NONE; // its kind
};

// The game in PGN.
std::string toPgn(const GameRecord& record);

class SoakGame {
public:
    // Plays the random opening of the game. The number decides everything about it.
    SoakGame(const GameOptions& gameOptions, int number);

    bool isOver() const { return record.result != "*"; }
    int getHash() const { return hash; }
    const plain::Position& getBoard() const { return board; }
    // The lines for the side to move, and the time that it has.
    std::string getPositionLine() const;
    std::string getGoLine() const;
    std::int64_t getAllowed() const;

    // Plays the legal answer of the side to move, which took `used`. Throws Fault, and plays
    // nothing, if that is too long.
    void take(const std::string& move, std::int64_t used);
    // Notes a fault of White or Black, which loses the game if it is not over.
    void note(Fault::Kind kind, bool isWhite, const std::string& text);

    GameRecord record;

private:
    void play(const std::string& move);
    // Ends the game if the rules or the greatest length do.
    void judge();
    void end(const std::string& result, const std::string& termination);

    const GameOptions& options;
    std::size_t opening; // number of it
    TimeControl control;
    int hash; // table size in MiB
    plain::Position board;
    std::array<std::int64_t, 2> left;       // on the clock of White and of Black, at least 1
    std::map<std::string, int> occurrences; // of positions by their identity
};
