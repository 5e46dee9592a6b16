// What the book does with a position.
#pragma once

#include "board/position.h"

#include <string>

// What the book would have done with the position, its most frequent move first; empty if it
// has no move for it.
std::string bookText(const Position& position);
