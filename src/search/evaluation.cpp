#include "search/evaluation.h"

#include "board/setUp.h"

namespace {

constexpr int LAZY_MARGIN = 500; // beyond it material alone decides

// By the number of bishops: a pair, or more, earns the same.
constexpr int BISHOP_PAIR_BONUS = 10;
// By the number of rooks on their last two ranks, if the enemy king stands there too.
constexpr int ADVANCED_ROOK_BONUS = 10;
constexpr int SECOND_ADVANCED_ROOK_BONUS = 25;

int bonusOf(PieceSum sum, Color color) {
    int bonus = sum.getBishops(color) > 1 ? BISHOP_PAIR_BONUS : 0;
    const int rooks = sum.isKingBack(opposite(color)) ? sum.getAdvancedRooks(color) : 0;
    bonus += rooks >= 1 ? ADVANCED_ROOK_BONUS : 0;
    bonus += rooks > 1 ? SECOND_ADVANCED_ROOK_BONUS : 0;
    return bonus;
}

// A sum that is good for White, turned to the side that has just moved.
int forLastMover(int whiteSum, const Position& position) {
    return position.colorToMove == WHITE ? -whiteSum : whiteSum;
}

} // namespace

int basicPositionEvaluationByMaterial(const Position& position) {
    const ByColor<int>& material = position.carried.material;
    return forLastMover(material[WHITE] - material[BLACK], position);
}

int positionalEval(const Position& position, int /*materialBalance*/) {
    const bool isEndGame = totalMaterial(position) <= END_GAME_MAX_MATERIAL;
    return forLastMover(positionalEvalOf(position.carried.sum, isEndGame), position);
}

int totalEval(const Position& position, int alpha, int beta) {
    const int material = basicPositionEvaluationByMaterial(position);
    if (material + LAZY_MARGIN < alpha || material - LAZY_MARGIN > beta) {
        return material;
    }
    return material + positionalEval(position, material);
}

int positionalEvalOf(PieceSum sum, bool isEndGame) {
    const int values = isEndGame ? sum.getEndGame() : sum.getMiddleGame();
    return values + bonusOf(sum, WHITE) - bonusOf(sum, BLACK);
}
