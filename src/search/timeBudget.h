// The time that a search may take.
#pragma once

#include "base/clock.h"

struct TimeBudget {
    // With a total of this or more, the search ignores the time limit; the waiting thread still
    // enforces it.
    static constexpr Milliseconds UNLIMITED = 2147483647;

    Milliseconds start = 0;  // the reading of the clock when the time began to run
    Milliseconds total = -1; // duration; -1 if not given, which stops a timed search at once
    bool infinite = false;   // no time limit; `total` is ignored
    // Whether a pass is started only if it is likely to end in time.
    bool skipsHopelessPasses = false;

    // Whether the search itself ignores the time limit.
    bool isUnlimited() const { return infinite || total >= UNLIMITED; }
};
