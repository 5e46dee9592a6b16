// The long notation of moves in explanations: pE2-E4, NG1xF3, 0-0, pE5xD6(e.p).
#pragma once

#include "board/move.h"

#include <iosfwd>
#include <string>

void printMove(std::ostream& stream, const Move& move);

// Reads the format of printMove(), with squares in either case, for the side `color`. Any colour
// but WHITE counts as BLACK. En passant is read from "(e.p.)", with a full stop that printMove()
// omits. A castling has its flag only. A capture has 7 as captured piece, because the text does
// not name it. If the text is too short, the missing squares are NOT_FOUND. So are all after the
// fourth character if that is neither '-' nor 'x', which also prints a message to standard error.
Move parseMove(const std::string& str, Color color);
