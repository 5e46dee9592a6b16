// A position as text for a console.
#pragma once

#include "board/position.h"

#include <iosfwd>

// Prints the piece list to standard output, four entries a line.
void printPieces(const Position& position);

// Prints the board as a diagram, White at the bottom. printPosition() prints to standard output.
void printPosition(const Position& position);
std::ostream& operator<<(std::ostream& stream, const Position& position);
