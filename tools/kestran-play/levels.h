// The levels of play: budgets of nodes, each with the rating that it is worth.
#pragma once

#include "search/searchLimits.h"

#include <array>
#include <cstdint>
#include <string>

struct Level {
    std::int64_t nodes; // for a move
    const char* rating;
};

// Level 1 first. The budgets that are powers of ten were measured in matches (docs/strength.md),
// the others lie between two of them. Smaller budgets than the first play no worse.
inline constexpr std::array LEVELS = {
    Level{1'000, "about 1200"},      Level{30'000, "about 1300"},
    Level{100'000, "about 1400"},    Level{300'000, "about 1600"},
    Level{1'000'000, "about 1750"},  Level{3'000'000, "about 1900"},
    Level{10'000'000, "about 2000"}, Level{SearchLimits::ANY_NODES, "by its time"},
};

// A table of the levels, in lines.
std::string getLevelTable();
// "1,000 nodes for each move, about 1200".
std::string describeLevel(int level);
