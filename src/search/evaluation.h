// The static score of a position. Its terms are in board/evaluationTerms.h.
//
// Every score is for the side that has just moved, that is, the one not to move, in thousandths of
// a pawn. The quiescence search asks right after a move and so gets the mover's score without a
// change of sign.
#pragma once

#include "board/position.h"

// The balance of material.
inline int basicPositionEvaluationByMaterial(const Position& position) {
    const ByColor<int>& material = position.incremental.material;
    return material[position.oppositeColorToMove()] - material[position.colorToMove];
}

// All but material. No term depends on `materialBalance`.
int positionalEval(const Position& position, int materialBalance);

// The full score, or material alone where that lies more than half a pawn outside
// the bounds `alpha` and `beta`.
int totalEval(const Position& position, int alpha, int beta);
