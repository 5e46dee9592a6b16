// Checking a position from scratch, for tools, tests and debug builds. It works everything
// out in the plainest form there is, compares, and repairs nothing.
#pragma once

#include "board/position.h"

#include <string>

// The first invariant of a position at rest that `position` breaks, told in words,
// or an empty text.
std::string findInconsistency(const Position& position);

// Ends the process with a message on standard error if `position` is inconsistent.
// Debug builds call it after each change of a position.
void requireConsistent(const Position& position);

// Whether a piece of `attacker` attacks `field`, asked of every piece on the board.
bool isAttackedPlainly(const Position& position, FieldIndex field, Color attacker);
