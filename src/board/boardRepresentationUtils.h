// Comparing moves and checking positions, for tools, tests and debug builds.
#pragma once

#include "board/boardRepresentation.h"

#include <string>

// Whether both records mean the same move. A castling as `a` equals any record with
// the same flag; any other `a` is compared by fields, moved and captured piece and
// promotion, and the flag of `b` plays no part.
bool testMoveEquality(const Move& a, const Move& b);

// The first invariant of a position at rest that `position` breaks, told in words,
// or an empty text. Works everything out from scratch and repairs nothing.
std::string findInconsistency(const Position& position);

// Ends the process with a message on standard error if `position` is inconsistent.
// Debug builds call it after each change of a position.
void requireConsistent(const Position& position);
