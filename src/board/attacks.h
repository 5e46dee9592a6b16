// Which fields are attacked, and whether a king is in check.
#pragma once

#include "board/position.h"

// Whether a piece of the side not to move attacks field `policko`. What stands on that
// field plays no part.
bool isFieldThreatened(const Position& pozice, FieldIndex policko);

// Whether the king of the side to move is attacked. It neither uses the remembered answer
// nor remembers its own: doMove() asks it about the mover, before it passes the move to
// the other side.
bool isInCheckNoCaching(const Position& position);

// Whether the side to move is in check. The answer is remembered in position.check and
// served from there until the position changes.
bool isInCheck(const Position& position);
