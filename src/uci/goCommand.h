// Reads the times in a `go` line.
#pragma once

#include "board/piece.h"
#include "search/timeBudget.h"

#include <string>
#include <vector>

// The times in a `go` line, in milliseconds, or NOT_GIVEN. Numbers saturate at 32 bits. Words after
// `infinite` are ignored.
struct GoWords {
    static constexpr Milliseconds NOT_GIVEN = -1;
    static constexpr Milliseconds DEFAULT_MOVES_TO_GO = 40;

    ByColor<Milliseconds> time = {NOT_GIVEN, NOT_GIVEN};
    ByColor<Milliseconds> increment = {NOT_GIVEN, NOT_GIVEN};
    Milliseconds moveTimeLocal = NOT_GIVEN;
    Milliseconds movesToGo = DEFAULT_MOVES_TO_GO; // a number of moves, 1 or more
    bool infinite = false;
};
GoWords readGoWords(const std::vector<std::string>& commands);

// The time budget for the words of a `go` line. Uses only the clock of the side to move. The time
// runs from `start`. Without a usable time the total is -1.
TimeBudget handleGoCommandProps(const std::vector<std::string>& commands, Color colorToMove,
                                Milliseconds start);
