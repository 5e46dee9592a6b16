// Making and unmaking moves, and legal move generation.
#pragma once

#include "board/move.h"
#include "board/position.h"

// The undo record of one move, owned by the caller. doMove() saves here what the move does not
// contain, and undoMove() restores it.
struct DoMoveContext {
    IncrementalState incremental;       // before the move
    std::int8_t tempPieceCapturedIndex; // list entry of the captured piece; unset if none
};

// Plays `move` and fills `context` for undoMove(). Returns false, and leaves the position
// unchanged, if the move would leave the mover's king in check. Requires a move that
// generateMoves() returned for this position.
bool doMove(Position& position, const Move& move, DoMoveContext& context);

// Like doMove(), without the test for legality. Requires a legal move.
void playMove(Position& position, const Move& move, DoMoveContext& context);

// Takes back the last move played. Requires the move and the context of its doMove(). Resets
// position.check to CHECK_UNKNOWN.
void undoMove(Position& position, const Move& move, const DoMoveContext& context);

// Writes the legal moves in the order of generateMoves() and returns their number. The rest of
// the array is unspecified.
int generateLegalMoves(const Position& position, MoveArray& outputMoves);

// Whether the side to move is checkmated (not stalemated).
bool isInMate(const Position& position);

// A copy of the position with `move` played. Requires a legal move.
Position positionAfter(const Position& position, const Move& move);

// Plays each legal move, calls `visit` with it, and takes it back.
template <class Visit> void visitLegalMoves(Position& position, const Visit& visit) {
    MoveArray moves;
    const int count = generateLegalMoves(position, moves);
    DoMoveContext context;
    for (const Move& move : moves.first(count)) {
        playMove(position, move, context);
        visit(move);
        undoMove(position, move, context);
    }
}
