// The long notation of moves in explanations: pE2-E4, NG1xF3, 0-0, pE5xD6(e.p).
#pragma once

#include "board/move.h"

#include <iosfwd>
#include <string>

// Prints a move in this notation.
void printMove(std::ostream& stream, const Move& move);

// Reads the format of printMove(), with squares in either case, for the side `color`. Any colour
// but WHITE counts as BLACK. En passant is read from "(e.p.)", with a full stop that printMove()
// omits. Of a castling, only the flag is set. The captured piece is 7, because the text does not
// name it. Squares that are missing or invalid are NOT_FOUND. If the fourth character is neither
// '-' nor 'x', prints a message to standard error and reads no further.
Move parseMove(const std::string& str, Color color);
