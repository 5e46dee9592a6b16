// The alpha-beta window of a pass at the root.
#pragma once

#include "search/score.h"

// For the side to move. The default is the full window, which every score lies inside.
struct RootWindow {
    int firstAlpha = DEFAULT_FIRST_ALFA;
    int firstBeta = DEFAULT_FIRST_BETA;

    bool operator==(const RootWindow&) const = default;
};
