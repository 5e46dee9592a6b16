#include "search/quiscence.h"

#include "base/loggingService.h"
#include "base/statistics.h"
#include "board/attacks.h"
#include "board/makeMove.h"
#include "board/moveGenerator.h"
#include "search/evaluation.h"
#include "search/score.h"

namespace {

void statsIncrement(int type, int depth, int increment) {
    testStatistics.incrementStatistic(type, depth, increment);
}

} // namespace

bool isMoveInteresting(const Position& targetPosition, const Move& moveToTarget) {
    return moveToTarget.pieceCaptured != NO_PIECE || moveToTarget.promotionPieceType != NO_PIECE ||
           isInCheck(targetPosition);
}

template <class Observer>
MoveEnding Quiscence<Observer>::quiscenceSearchInner(Position& position, int alfa, int beta,
                                                     Variant& variant) {
    if (state.getQuiscenceMaxDepth() == 0) {
        // The bounds go in as they are, although they belong to the other side.
        variant.evaluation = -totalEval(position, alfa, beta);
        return MoveEnding::NO_QUISCENCE;
    }
    // Standing pat. This is the only exit of the search with a score beyond beta.
    if (state.config._new_feature_quiscence_optimization && !isInCheck(position)) {
        const int material = basicPositionEvaluationByMaterial(position);
        const int betterAlfa = -material - positionalEval(position, material);
        if (betterAlfa > alfa) {
            if (betterAlfa >= beta) {
                variant.evaluation = betterAlfa;
                return MoveEnding::STAND_PAT;
            }
            alfa = betterAlfa;
        }
    }
    return quiscenceSearchRek(position, variant, alfa, beta, 0);
}

template <class Observer>
MoveEnding Quiscence<Observer>::quiscenceSearchRek(Position& position, Variant& variant, int alfa,
                                                   int beta, int depth) {
    if (position.carried.halfMoveClock >= MAX_HALF_MOVE_CLOCK) {
        variant.clear(DRAW_EVALUATION);
        return MoveEnding::CLOCK;
    }

    MoveArray outMoves;
    MoveIndices moveOrderIndices;
    const int pseudoLegalMovesN = generateMoves(position, outMoves);
    statsIncrement(TestStatistics::Q_SEARCH_ALL, depth, pseudoLegalMovesN);
    const bool isInCheckOriginally = isInCheck(position);
    orderMoves(outMoves, moveOrderIndices, pseudoLegalMovesN);

    int numberOfLegalMoves = 0;
    Variant localVariant;
    DoMoveContext context;
    for (int i = 0; i < pseudoLegalMovesN; ++i) {
        const Move& m = outMoves[moveOrderIndices[i]];
        if (!doMove(position, m, context)) {
            continue;
        }
        observer.doMove(m);

        // An abandoned pass leaves its moves on the board, here and in every frame above.
        if (state.nodes.countMove()) {
            logger.debug("Time up as checked in quiscence generator at depth ", depth);
            variant.clear(beta);
            return MoveEnding::SEARCHED;
        }
        statsIncrement(TestStatistics::Q_SEARCH, depth, 1);
        ++numberOfLegalMoves;

        localVariant.clear(0);
        const MoveEnding ending =
            scoreQuiscenceMove(position, m, localVariant, alfa, beta, depth, isInCheckOriginally);
        if (state.nodes.isAbandoned()) {
            logger.trace("Quitting in quiscence generator at depth ", depth);
            variant.clear(beta);
            return MoveEnding::SEARCHED;
        }
        state.moveUndoneInner(position);
        undoMove(position, m, context);
        observer.explainQuiscenceMove(alfa, beta, localVariant, m, ending);

        if (localVariant.evaluation >= beta) {
            statsIncrement(TestStatistics::Q_CUTTOFS, depth, 1);
            variant.clear(beta);
            return MoveEnding::SEARCHED;
        }
        if (localVariant.evaluation > alfa) {
            alfa = localVariant.evaluation;
            variant.extend(localVariant, {m, true, false, false});
        }
    }

    if (numberOfLegalMoves == 0) {
        variant.evaluation = isInCheckOriginally ? MATED_EVALUATION : DRAW_EVALUATION;
        return isInCheckOriginally ? MoveEnding::CHECKMATE : MoveEnding::STALEMATE;
    }
    variant.evaluation = alfa;
    return MoveEnding::SEARCHED;
}

// Scores `move`, which has just led to `position`, for the side that made it, and tells
// how. If the move is searched further, `localVariant` gets the line after it as well.
template <class Observer>
MoveEnding Quiscence<Observer>::scoreQuiscenceMove(Position& position, const Move& move,
                                                   Variant& localVariant, int alfa, int beta,
                                                   int depth, bool isInCheckOriginally) {
    if (state.moveDoneInner(position) > 1) {
        localVariant.evaluation = DRAW_EVALUATION;
        return MoveEnding::REPETITION;
    }
    const int material = basicPositionEvaluationByMaterial(position);
    const bool isQuiet = !isInCheckOriginally && !isMoveInteresting(position, move);
    const bool isDeepestPly = depth >= state.getQuiscenceMaxDepth() - 1;
    if (isQuiet || isDeepestPly) {
        localVariant.evaluation = positionalEval(position, material) + material;
        return isQuiet ? MoveEnding::QUIET : MoveEnding::DEEPEST_PLY;
    }
    const std::int64_t reach = std::int64_t{state.config.quiscenceDeltaWindow} + material;
    const bool isOutOfReach = reach < alfa;
    if (isOutOfReach && !isInCheckOriginally && !isInCheck(position)) {
        localVariant.evaluation = material;
        return MoveEnding::OUT_OF_REACH;
    }
    const MoveEnding ending = quiscenceSearchRek(position, localVariant, closerToCheckMate(-beta),
                                                 closerToCheckMate(-alfa), depth + 1);
    localVariant.evaluation = furtherFromCheckMate(-localVariant.evaluation);
    return ending;
}

template class Quiscence<NoObserver>;
template class Quiscence<ObservedBy>;
