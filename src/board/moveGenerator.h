// Generating moves.
//
// The generator is pseudo-legal: it leaves a king in check to doMove(), which refuses such
// a move. Only castling is tested in full when it is generated.
#pragma once

#include "board/move.h"
#include "board/position.h"

// Writes the pseudo-legal moves of the side to move to `outputMoves` and returns their
// number. The order is part of the product: it follows the piece list and the offset
// tables, and decides search results.
int generateMoves(const Position& position, MoveArray& outputMoves);
