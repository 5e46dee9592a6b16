// Pictures of a position for a person at a console.
#pragma once

#include "board/position.h"

#include <iosfwd>

// The piece list on standard output, four entries a line.
void printPieces(const Position& position);

// The board as a diagram, White at the bottom; without a stream, on standard output.
void printPosition(const Position& position);
std::ostream& operator<<(std::ostream& stream, const Position& position);
