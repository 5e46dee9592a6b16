// What a `go` line says about time.
#pragma once

#include "board/piece.h"
#include "search/timeBudget.h"

#include <string>
#include <vector>

// What the words tell of time, in milliseconds: NOT_GIVEN where they tell nothing. Numbers are
// brought to 32 bits. Nothing behind the word `infinite` is looked at.
struct GoWords {
    static constexpr Milliseconds NOT_GIVEN = -1;
    static constexpr Milliseconds DEFAULT_MOVES_TO_GO = 40;

    ByColor<Milliseconds> time = {NOT_GIVEN, NOT_GIVEN};
    ByColor<Milliseconds> increment = {NOT_GIVEN, NOT_GIVEN};
    Milliseconds moveTimeLocal = NOT_GIVEN;
    Milliseconds movesToGo = DEFAULT_MOVES_TO_GO; // 1 or more
    bool infinite = false;
};
GoWords readGoWords(const std::vector<std::string>& commands);

// The budget of a search for the words of a `go` line, of which the clock of the side to
// move counts, and a time that began to run at `start`. A line that gives no usable time
// gives a total of -1.
TimeBudget handleGoCommandProps(const std::vector<std::string>& commands, Color colorToMove,
                                Milliseconds start);
