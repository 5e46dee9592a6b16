#include "search/quiscence.h"

#include "base/loggingService.h"
#include "base/statistics.h"
#include "board/moveGenerator.h"
#include "search/evaluation.h"
#include "search/treeGenerator.h"

namespace {

void statsIncrement(int type, int depth, int increment) {
    testStatistics.incrementStatistic(type, depth, increment);
}

} // namespace

bool isMoveInteresting(Position& targetPosition, const Move& moveToTarget) {
    return moveToTarget.pieceCaptured != NO_PIECE || moveToTarget.promotionPieceType != NO_PIECE ||
           isInCheck(targetPosition);
}

template <class Observer>
void BasicTreeGenerator<Observer>::quiscenceSearch(Position& position, int alfa, int beta,
                                                   Variant& variant) {
    clearTable();
    // No pass of the tree has opened a run for the counters.
    testStatistics.newRun();
    quiscenceSearchInner(position, alfa, beta, variant);
}

template <class Observer>
void BasicTreeGenerator<Observer>::quiscenceSearchInner(Position& position, int alfa, int beta,
                                                        Variant& variant) {
    if (config->quiscenceMaxDepth == 0) {
        // The bounds go in as they are, although they belong to the other side.
        variant.evaluation = -totalEval(position, alfa, beta);
        return;
    }
    // Standing pat. This is the only exit of the search with a score beyond beta.
    if (config->_new_feature_quiscence_optimization && !isInCheck(position)) {
        const int material = basicPositionEvaluationByMaterial(position);
        const int betterAlfa = -material - positionalEval(position, material);
        if (betterAlfa > alfa) {
            if (betterAlfa >= beta) {
                variant.evaluation = betterAlfa;
                return;
            }
            alfa = betterAlfa;
        }
    }
    quiscenceSearchRek(position, variant, alfa, beta, 0);
}

template <class Observer>
void BasicTreeGenerator<Observer>::quiscenceSearchRek(Position& position, Variant& variant,
                                                      int alfa, int beta, int depth) {
    if (position.halfMoveClock >= MAX_HALF_MOVE_CLOCK) {
        variant.clear(DRAW_EVALUATION);
        return;
    }

    MoveArray outMoves;
    std::array<int, MAX_MOVES> moveOrderIndices;
    const int pseudoLegalMovesN = generateMoves(position, outMoves.data());
    statsIncrement(TestStatistics::Q_SEARCH_ALL, depth, pseudoLegalMovesN);
    const bool isInCheckOriginally = isInCheck(position);
    orderMoves(outMoves.data(), moveOrderIndices.data(), pseudoLegalMovesN);

    int numberOfLegalMoves = 0;
    Variant localVariant;
    DoMoveContext context;
    for (int i = 0; i < pseudoLegalMovesN; ++i) {
        const Move& m = outMoves[at(moveOrderIndices[at(i)])];
        localVariant.clear(0);
        context.init();
        if (!doMove(position, m, context)) {
            continue;
        }
        observer.doMove(m);

        // An abandoned pass leaves its moves on the board, here and in every frame above.
        if (isTimeUpAfterCounting()) {
            logger.debug("Time up as checked in quiscence generator at depth ", depth);
            variant.clear(beta);
            return;
        }
        statsIncrement(TestStatistics::Q_SEARCH, depth, 1);
        ++numberOfLegalMoves;

        localVariant.evaluation =
            scoreQuiscenceMove(position, m, localVariant, alfa, beta, depth, isInCheckOriginally);
        if (isAbandoned()) {
            logger.trace("Quitting in quiscence generator at depth ", depth);
            variant.clear(beta);
            return;
        }
        moveUndoneInner(position);
        undoMove(position, m, context);
        observer.explainQuiscenceMove(alfa, beta, localVariant, m);

        if (localVariant.evaluation >= beta) {
            statsIncrement(TestStatistics::Q_CUTTOFS, depth, 1);
            variant.clear(beta);
            return;
        }
        if (localVariant.evaluation > alfa) {
            alfa = localVariant.evaluation;
            variant.extend(localVariant, {m, true, false, false});
        }
    }

    if (numberOfLegalMoves == 0) {
        variant.evaluation = isInCheck(position) ? MATED_EVALUATION : DRAW_EVALUATION;
        return;
    }
    variant.evaluation = alfa;
}

// The score of `move`, which has just led to `position`, for the side that made it. If
// it is searched further, `localVariant` gets the line behind it.
template <class Observer>
int BasicTreeGenerator<Observer>::scoreQuiscenceMove(Position& position, const Move& move,
                                                     Variant& localVariant, int alfa, int beta,
                                                     int depth, bool isInCheckOriginally) {
    if (moveDoneInner(position) > 1) {
        return DRAW_EVALUATION;
    }
    const int material = basicPositionEvaluationByMaterial(position);
    const bool isQuiet = !isInCheckOriginally && !isMoveInteresting(position, move);
    const bool isDeepestPly = depth >= config->quiscenceMaxDepth - 1;
    if (isQuiet || isDeepestPly) {
        return positionalEval(position, material) + material;
    }
    const std::int64_t reach = std::int64_t{config->quiscenceDeltaWindow} + material;
    const bool isOutOfReach = reach < alfa;
    if (isOutOfReach && !isInCheckOriginally && !isInCheck(position)) {
        return material;
    }
    quiscenceSearchRek(position, localVariant, closerToCheckMate(-beta), closerToCheckMate(-alfa),
                       depth + 1);
    return furtherFromCheckMate(-localVariant.evaluation);
}

// The rest of the object is instantiated in treeGenerator.cpp.
template void BasicTreeGenerator<NoObserver>::quiscenceSearch(Position&, int, int, Variant&);
template void BasicTreeGenerator<NoObserver>::quiscenceSearchInner(Position&, int, int, Variant&);
template void BasicTreeGenerator<NoObserver>::quiscenceSearchRek(Position&, Variant&, int, int,
                                                                 int);
template int BasicTreeGenerator<NoObserver>::scoreQuiscenceMove(Position&, const Move&, Variant&,
                                                                int, int, int, bool);
template void BasicTreeGenerator<ObservedBy>::quiscenceSearch(Position&, int, int, Variant&);
template void BasicTreeGenerator<ObservedBy>::quiscenceSearchInner(Position&, int, int, Variant&);
template void BasicTreeGenerator<ObservedBy>::quiscenceSearchRek(Position&, Variant&, int, int,
                                                                 int);
template int BasicTreeGenerator<ObservedBy>::scoreQuiscenceMove(Position&, const Move&, Variant&,
                                                                int, int, int, bool);
