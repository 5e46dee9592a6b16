// The levels of play as kestran-play numbers them: those of uci/levels.h, and the full strength.
#pragma once

#include "uci/levels.h"

#include <string>

inline constexpr int LEVEL_COUNT = static_cast<int>(LEVELS.size()) + 1;

// The limits of a level from 1 to LEVEL_COUNT; null for the last, which has none.
const Level* getLevel(int level);
// A table of the levels, in lines.
std::string getLevelTable();
// "1,000 nodes for each move, about 1200".
std::string describeLevel(int number);
