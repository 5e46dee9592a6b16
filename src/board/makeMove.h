// Making and unmaking moves, and the legal moves that follow from it.
#pragma once

#include "board/move.h"
#include "board/position.h"

// The undo record of one move, owned by the caller. doMove() saves into it what the move
// itself does not tell, undoMove() puts it back.
struct DoMoveContext {
    IncrementalState incremental;       // as it was before the move
    std::int8_t tempPieceCapturedIndex; // list entry of the captured piece, if there is one
};

// Plays `move`, which generateMoves() wrote for this very position. True: the move
// stands, and `context` holds what undoMove() needs. False: it would leave the
// mover's king attacked, and the position is as it was.
bool doMove(Position& position, const Move& move, DoMoveContext& context);

// Plays a move that is known to be legal.
void playMove(Position& position, const Move& move, DoMoveContext& context);

// Takes back the last move that was played, given the same move and
// the same context. What is known of a check is forgotten.
void undoMove(Position& position, const Move& move, const DoMoveContext& context);

// The legal moves, in the order of generateMoves(); returns their number. What
// follows the moves in the array means nothing.
int generateLegalMoves(const Position& position, MoveArray& outputMoves);

// Whether the side to move is checkmated. A stalemate is no mate.
bool isInMate(const Position& position);

// The position after a legal move.
Position positionAfter(const Position& position, const Move& move);
