// How the time of a game is measured, and what both sides have left of it.
#pragma once

#include <array>
#include <map>
#include <string>

// All in milliseconds.
struct TimeControl {
    long moveTime = 0;  // for each move alone; the clock counts where this is 0
    long clock = 0;     // at the beginning
    long increment = 0; // for each move
    int moves = 0;      // after which `clock` is added again, 0 for never
    std::string text{}; // what it was read from, as PGN and the user have it
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
    long getAllowed() const;
    // A move has taken `used`. Returns by how much that was too long, below 0 for a move in
    // time, and turns to the other side.
    long take(long used);

private:
    TimeControl control;
    bool isWhiteToMove;
    int plies = 0;            // of both sides so far
    std::array<long, 2> left; // of White and of Black; above 0
};

// The time that moves have used beyond what they were allowed.
class Lateness {
public:
    // One more move; a time below 0 counts as 0.
    void add(long beyond, long count = 1);
    void add(const Lateness& other);

    long getMoves() const { return moves; }
    // The moves that were at most `beyond` late.
    long getMovesWithin(long beyond) const;
    // The least time that so many per mille of the moves did not exceed; 0 without moves.
    long getPermille(int share) const;
    // How many moves were so late, by milliseconds.
    const std::map<long, long>& getCounts() const { return counts; }

private:
    std::map<long, long> counts;
    long moves = 0;
};
