// Which fields are attacked, and whether a king is in check.
#pragma once

#include "board/attackSets.h"
#include "board/position.h"

// The pieces of a colour that attack a field, if just the fields of `occupied` stop a slider.
// What stands on the field itself plays no part.
FieldSet attackersOf(const Position& position, FieldIndex field, Color attacker, FieldSet occupied);

// Whether a piece of the side not to move attacks field `policko`. What stands on that
// field plays no part.
bool isFieldThreatened(const Position& pozice, FieldIndex policko);

// Whether the king of the side to move stands attacked. Neither asks for the remembered
// answer nor remembers its own: doMove() asks it about the mover, before it hands the
// move to the other side.
bool isInCheckNoCaching(const Position& position);

// Whether the side to move is in check. The answer is remembered in position.check and
// served from there until the position changes.
bool isInCheck(const Position& position);
