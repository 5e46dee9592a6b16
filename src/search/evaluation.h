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
inline int basicPositionEvaluationByMaterial(const Position& position) {
    const ByColor<int>& material = position.incremental.material;
    return material[position.oppositeColorToMove()] - material[position.colorToMove];
}

// The sum of all but material. No term reads `materialBalance`, the caller's own.
int positionalEval(const Position& position, int materialBalance);

// The full score, or material alone where that lies more than half a pawn outside
// the bounds, which are used as they come.
int totalEval(const Position& position, int alpha, int beta);

// ---- Its terms, from the sum of the pieces; good for White if positive ----

// For a pair of bishops or more.
inline constexpr int BISHOP_PAIR_BONUS = 10;
// For rooks on their last two ranks where the enemy king stands there too.
inline constexpr int ADVANCED_ROOK_BONUS = 10;
inline constexpr int SECOND_ADVANCED_ROOK_BONUS = 25;

// The bonuses of a colour.
constexpr int bonusOf(PieceSum sum, Color color) {
    int bonus = sum.getBishops(color) > 1 ? BISHOP_PAIR_BONUS : 0;
    const int rooks = sum.isKingBack(opposite(color)) ? sum.getAdvancedRooks(color) : 0;
    bonus += rooks >= 1 ? ADVANCED_ROOK_BONUS : 0;
    bonus += rooks > 1 ? SECOND_ADVANCED_ROOK_BONUS : 0;
    return bonus;
}

// All but material.
constexpr int positionalEvalOf(PieceSum sum, bool isEndGame) {
    const int values = isEndGame ? sum.getEndGame() : sum.getMiddleGame();
    return sum.canHaveBonus() ? values + bonusOf(sum, WHITE) - bonusOf(sum, BLACK) : values;
}
