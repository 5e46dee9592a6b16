// Generating, making and unmaking moves, and the test for check.
//
// The generator is pseudo-legal: it leaves a king in check to doMove(), which
// refuses such a move. Only castling is tested in full when it is generated.
#pragma once

#include "board/boardRepresentation.h"

// Writes the pseudo-legal moves of the side to move to `outputMoves`, which has
// room for MAX_MOVES, and returns their number. The order is part of the product:
// it follows the piece list and the offset tables, and decides search results.
int generateMoves(const Position& position, Move* outputMoves);

// Whether the side to move is in check. The answer is kept in position.check and
// served from there until the position changes.
bool isInCheck(Position& position);

// Plays `move`, which generateMoves() wrote for this very position. True: the move
// stands, and `context` holds what undoMove() needs. False: it would leave the
// mover's king attacked, and the position is as it was. Clear `context` before.
bool doMove(Position& position, const Move& move, DoMoveContext& context);

// Takes back the last move that doMove() played with true, given the same move and
// the same context. The check cache is empty afterwards.
void undoMove(Position& position, const Move& move, const DoMoveContext& context);

// The legal moves, in the order of generateMoves(); returns their number. Leaves
// the position as it was, except that the check cache may be empty. What stands
// behind the moves in the array means nothing.
int generateLegalMoves(Position& position, Move* outputMoves);

// Whether the side to move is checkmated. A stalemate is no mate.
bool isInMate(Position& position);
