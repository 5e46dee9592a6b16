#include "search/evaluation.h"

#include "board/setUp.h"

namespace {

constexpr int LAZY_MARGIN = 500; // beyond it material alone decides

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
