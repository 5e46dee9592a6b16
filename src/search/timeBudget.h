// The time that a search may take.
#pragma once

#include "base/clock.h"

struct TimeBudget {
    // From this value on the search ignores the time limit; the waiting thread still enforces it.
    static constexpr Milliseconds UNLIMITED = 2147483647;

    Milliseconds start = 0;  // the clock when the time began to run, in milliseconds
    Milliseconds total = -1; // milliseconds from then on, -1 if not given
    bool infinite = false;   // the search ends only when it is stopped; `total` means nothing

    // Whether only a stop, a mate or the deepest pass ends the search.
    bool isUnlimited() const { return infinite || total >= UNLIMITED; }
};
