// The pseudo-legal move generator: moves may leave the own king in check, which doMove()
// rejects. Castling alone is fully tested here.
#pragma once

#include "board/move.h"
#include "board/position.h"

// Writes the pseudo-legal moves of the side to move to `outputMoves` and returns their number.
// The order is part of the contract, because it decides search results: it follows the piece
// list, then the offset tables of field.h.
int generateMoves(const Position& position, MoveArray& outputMoves);
