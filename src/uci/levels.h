// The levels of play, with the ratings that they are worth.
#pragma once

#include "search/searchLimits.h"

#include <array>
#include <cstdint>

struct Level {
    int rating;                               // see docs/strength.md
    std::int64_t nodes;                       // for a move
    int quiscenceDepth = MAX_QUISCENCE_DEPTH; // plies
};

// The weakest first. Without quiescence, or with little of it, the engine does not see exchanges to
// their end, but small budgets last for the first pass.
inline constexpr std::array LEVELS = {
    Level{300, 100, 0},     Level{650, 300, 0},      Level{900, 1'000, 0}, Level{1050, 1'000, 1},
    Level{1150, 3'000, 1},  Level{1450, 10'000, 1},  Level{1600, 300'000}, Level{1750, 1'000'000},
    Level{1900, 3'000'000}, Level{2000, 10'000'000},
};

// The level whose rating is nearest.
const Level& getLevelForRating(int rating);
// Lowers the limits of a search to those of a level.
void limitTo(const Level& level, SearchLimits& limits);
