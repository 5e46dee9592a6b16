// The static score of a position: material, piece-square values and two bonuses.
//
// Every score of a position is for the side that has just moved, that is, the one not to
// move, in thousandths of a pawn. The quiescence search asks right after a move and so gets
// the mover's score without a change of sign.
#pragma once

#include "board/pieceSums.h"
#include "board/position.h"

// Worth of all pieces of both sides up to which the end game is played.
inline constexpr int END_GAME_MAX_MATERIAL = 26200;

// The balance of material.
int basicPositionEvaluationByMaterial(const Position& position);

// The sum of all but material. No term reads `materialBalance`, the caller's own.
int positionalEval(const Position& position, int materialBalance);

// The full score, or material alone where that lies more than half a pawn outside
// the bounds, which are used as they come.
int totalEval(const Position& position, int alpha, int beta);

// The sum of all but material that pieces with this sum have, good for White if positive.
int positionalEvalOf(PieceSum sum, bool isEndGame);
