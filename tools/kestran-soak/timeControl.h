// How the time of a game is measured, and what both sides have left of it.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>

// All in milliseconds.
struct TimeControl {
    std::int64_t moveTime = 0;  // for each move alone; the clock counts where this is 0
    std::int64_t clock = 0;     // at the beginning
    std::int64_t increment = 0; // for each move
    int moves = 0;              // after which `clock` is added again, 0 for never
    std::string text{};         // what it was read from, as PGN and the user have it
};

// Reads "1/0.001", one millisecond for each move; "2+0.1", two seconds and a tenth for each
// move; "40/5", five seconds for each forty moves; "40/5+0.1" and "60". Seconds have at most
// three decimals. UsageError for another text.
TimeControl parseTimeControl(const std::string& text);

// The clocks of a game.
class Clocks {
public:
    Clocks(TimeControl timeControl, bool isWhiteToMove);

    // The `go` for the side to move.
    std::string getGoLine() const;
    // The longest that the answer to it may take.
    std::int64_t getAllowed() const;
    // A move has taken `used`. Returns by how much that was too long, below 0 for a move in
    // time, and turns to the other side.
    std::int64_t take(std::int64_t used);

private:
    TimeControl control;
    bool isWhiteToMove;
    int plies = 0;                    // of both sides so far
    std::array<std::int64_t, 2> left; // of White and of Black; above 0
};

// The time that moves have used beyond what they were allowed.
class Lateness {
public:
    // One more move; a time below 0 counts as 0.
    void add(std::int64_t beyond, std::int64_t count = 1);
    void add(const Lateness& other);

    std::int64_t getMoves() const { return moves; }
    // The moves that were at most `beyond` late.
    std::int64_t getMovesWithin(std::int64_t beyond) const;
    // The least time that so many per mille of the moves did not exceed; 0 without moves.
    std::int64_t getPermille(int share) const;
    // How many moves were so late, by milliseconds.
    const std::map<std::int64_t, std::int64_t>& getCounts() const { return counts; }

private:
    std::map<std::int64_t, std::int64_t> counts;
    std::int64_t moves = 0;
};
