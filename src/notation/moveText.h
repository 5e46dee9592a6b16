// A move in words, for logs and consoles: pE2-E4, NG1xF3, 0-0, pE5xD6(e.p).
#pragma once

#include "board/move.h"

#include <iosfwd>
#include <string>

// A move with its piece and capital fields; without a stream, on standard output.
void printMove(std::ostream& stream, const Move& move);
void printMove(const Move& move);

// Reads what printMove() writes, with fields in either case, for the side `color`; every
// colour but White is taken for Black. For en passant the text must end in "(e.p.)", with a
// full stop that printMove() leaves out. A castling leaves `from`, `to` and `pieceMoved`
// unset; 7 as captured piece says only that something is taken. A text that is too short,
// or that has neither '-' nor 'x' in its place, gives a move whose missing fields are
// NOT_FOUND; the latter also writes a message to standard error.
Move parseMove(const std::string& str, Color color);
