// What a `go` line says about time.
#pragma once

#include "base/timeBudget.h"
#include "board/piece.h"

#include <string>
#include <vector>

// The budget of a search for the words of a `go` line, of which the clock of the side to
// move counts, and a time that began to run at `start`. A line that gives no usable time
// gives a total of -1.
TimeBudget handleGoCommandProps(const std::vector<std::string>& commands, Color colorToMove,
                                Milliseconds start);
