// The alpha-beta window of a pass at the root.
#pragma once

#include "search/score.h"

// Both bounds are for the side to move. The default is the full window, which contains every score.
struct RootWindow {
    int firstAlpha = DEFAULT_FIRST_ALFA;
    int firstBeta = DEFAULT_FIRST_BETA;

    bool operator==(const RootWindow&) const = default;
};
