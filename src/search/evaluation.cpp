#include "search/evaluation.h"

#include "board/setUp.h"

namespace {

constexpr int LAZY_MARGIN = 500; // beyond it material alone decides

} // namespace

int positionalEval(const Position& position, int /*materialBalance*/) {
    return staticScore(position.incremental.sum, 0, totalMaterial(position),
                       position.oppositeColorToMove());
}

int totalEval(const Position& position, int alpha, int beta) {
    const int material = basicPositionEvaluationByMaterial(position);
    if (material + LAZY_MARGIN < alpha || material - LAZY_MARGIN > beta) {
        return material;
    }
    return material + positionalEval(position, material);
}
