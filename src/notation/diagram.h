// A position as text for a console.
#pragma once

#include "board/position.h"

#include <iosfwd>

// Prints the piece list, four entries a line; without a stream, to standard output.
void printPieces(const Position& position);
void printPieces(std::ostream& stream, const Position& position);

// Prints the board as a diagram, White at the bottom. printPosition() prints to standard output.
void printPosition(const Position& position);
std::ostream& operator<<(std::ostream& stream, const Position& position);
