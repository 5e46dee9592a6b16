// The static score of a position. Its terms are in board/evaluationTerms.h.
//
// Every score is for the side not to move, that is, the one that has just moved, in thousandths of
// a pawn.
#pragma once

#include "board/position.h"

// The balance of material: positive if the side not to move has more.
inline int basicPositionEvaluationByMaterial(const Position& position) {
    const ByColor<int>& material = position.incremental.material;
    return material[position.oppositeColorToMove()] - material[position.colorToMove];
}

// The score without material. Ignores `materialBalance`.
int positionalEval(const Position& position, int materialBalance);

// The full score, or material alone if that lies more than half a pawn outside the bounds `alpha`
// and `beta`, which are for the side not to move.
int totalEval(const Position& position, int alpha, int beta);
