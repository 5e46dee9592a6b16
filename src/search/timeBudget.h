// How long a search may take. Made once, from the words of `go`, and handed down from
// there to everybody who watches the time.
#pragma once

#include "base/platform.h"

struct TimeBudget {
    // A span of this length or more is no limit for the search itself, though it is one
    // for whoever waits for the search.
    static constexpr Milliseconds UNLIMITED = 2147483647;

    Milliseconds start = 0;  // the clock when the time began to run
    Milliseconds total = -1; // the span from then on, -1 if none was given
    bool infinite = false;   // the search ends only when it is stopped; `total` means nothing

    // Whether the search is to go on until it is stopped or has nothing more to find.
    bool isUnlimited() const { return infinite || total >= UNLIMITED; }
};
