// Tells FEN text that can be played from text that cannot. The reader of
// setFenNotation() believes what it is given; the engine asks here first.
#pragma once

#include "board/boardRepresentation.h"

#include <string>

// Reads `fen` into `position` and returns an empty text. If it cannot be played,
// returns one sentence that says why and leaves the position alone. Claims that the
// board does not bear out are dropped: a castling right without its king and rook
// at home, an en passant field without the pawn that has just passed over it.
std::string readPlayableFen(Position& position, const std::string& fen);
