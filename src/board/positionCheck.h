// Checks a position for tools, tests and debug builds. Computes every derived value from scratch,
// as plainly as possible, and compares. Repairs nothing.
#pragma once

#include "board/position.h"

#include <string>

// A description of the first broken invariant, or an empty text if there is none.
std::string findInconsistency(const Position& position);

// Aborts with a message on standard error if `position` is inconsistent. Debug builds call it
// after each change of a position.
void requireConsistent(const Position& position);

// Whether a piece of `attacker` attacks `field`. Tests each piece of the board in turn.
bool isAttackedPlainly(const Position& position, FieldIndex field, Color attacker);
