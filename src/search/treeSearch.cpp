#include "search/treeSearch.h"

#include "base/loggingService.h"
#include "board/checkersAndPins.h"
#include "board/makeMove.h"
#include "board/moveGenerator.h"
#include "search/score.h"
#include "search/statistics.h"

#include <algorithm>
#include <vector>

namespace {

// The pseudo-legal moves of a node; of the root only those that it may choose from, unless
// `rootMoves` are empty. Returns how many.
int generateMovesAt(int depth, const Position& position, const std::vector<Move>& rootMoves,
                    MoveArray& moves) {
    const int count = generateMoves(position, moves);
    if (depth > 0 || rootMoves.empty()) {
        return count;
    }
    const auto isOther = [&rootMoves](const Move& move) {
        return std::ranges::none_of(
            rootMoves, [&move](const Move& other) { return testMoveEquality(move, other); });
    };
    const auto end = std::remove_if(moves.begin(), moves.begin() + count, isOther);
    return static_cast<int>(end - moves.begin());
}

} // namespace

template <class Observer>
MoveEnding TreeSearch<Observer>::generateTreeRek(Position& position, Variant& outputVar, int alfa,
                                                 int beta, int depth) {
    // The clock comes before everything else: even a mate is a draw by then.
    if (position.incremental.halfMoveClock >= MAX_HALF_MOVE_CLOCK) {
        outputVar.clear(DRAW_EVALUATION);
        return MoveEnding::CLOCK;
    }

    MoveArray outMoves;
    MoveIndices moveOrderIndices;
    const int pseudoLegalMovesN = generateMovesAt(depth, position, state.rootMoves, outMoves);
    statsIncrement(TestStatistics::ORDINAL_SEARCH_ALL, depth, pseudoLegalMovesN);
    state.order.orderMoves(outMoves, moveOrderIndices, pseudoLegalMovesN, depth,
                           state.table.getBestMoveHint(position));

    const int originalAlfa = alfa;
    const CheckersAndPins lines(position);
    int numberOfLegalMoves = 0;
    Variant variantLocal;
    DoMoveContext context;
    for (int i = 0; i < pseudoLegalMovesN; ++i) {
        const Move& m = outMoves[moveOrderIndices[i]];
        if (!isLegal(lines, m)) {
            continue;
        }
        observer.doMove(m);
        if (state.nodes.countTreeMoveAndPoll()) {
            logger.debug("Time up as checked in tree generator at depth ", depth);
            outputVar.clear(beta);
            return MoveEnding::SEARCHED;
        }
        statsIncrement(TestStatistics::ORDINAL_SEARCH, depth, 1);
        ++numberOfLegalMoves;

        variantLocal.clear(0);
        playMove(position, m, context);
        const MoveEnding ending =
            scoreMove(position, variantLocal, alfa, originalAlfa, beta, depth);
        undoMove(position, m, context);
        if (state.nodes.isAbandoned()) {
            outputVar.clear(beta);
            return MoveEnding::SEARCHED;
        }
        observer.explainTreeGenMove(alfa, beta, variantLocal, m, ending);
        if (isLmfCut(ending)) {
            continue;
        }

        if (variantLocal.evaluation >= beta) {
            if (m.pieceCaptured == NO_PIECE) {
                state.order.updateKiller(m, depth);
            }
            statsIncrement(TestStatistics::ORDINAL_SEARCH_CUTTOFS, depth, 1);
            outputVar.clear(beta);
            return MoveEnding::SEARCHED;
        }
        if (variantLocal.evaluation > alfa) {
            alfa = variantLocal.evaluation;
            if (!outputVar.extend(variantLocal, {m, false, isFromTable(ending), false})) {
                logger.error("Hard constraint MAX_VARIANT_MOVES hit!");
            }
        }
    }

    if (numberOfLegalMoves == 0) {
        const bool isMate = lines.isInCheck();
        outputVar.evaluation = isMate ? MATED_EVALUATION : DRAW_EVALUATION;
        return isMate ? MoveEnding::CHECKMATE : MoveEnding::STALEMATE;
    }
    outputVar.evaluation = alfa;
    return MoveEnding::SEARCHED;
}

// Scores the move that has just led to `position`, from the viewpoint of the side that
// made it, and tells how: `variantLocal` gets the score and the line after the move.
template <class Observer>
MoveEnding TreeSearch<Observer>::scoreMove(Position& position, Variant& variantLocal, int alfa,
                                           int originalAlfa, int beta, int depth) {
    // One earlier occurrence, in the game or on the path, is enough.
    if (state.repetitionTable.isRepetition(position.incremental.hash,
                                           position.incremental.halfMoveClock)) {
        variantLocal.evaluation = DRAW_EVALUATION;
        return MoveEnding::REPETITION;
    }
    const int maxVariantDepth = state.actualMoveDepth - 1 - depth;
    if (state.config.useTable) {
        const bool useTableEntryBool =
            state.table.useTableEntry(position, maxVariantDepth, variantLocal.evaluation);
        if (state.table.lmf(position, alfa, originalAlfa, maxVariantDepth)) {
            return useTableEntryBool ? MoveEnding::TABLE_LMF_CUT : MoveEnding::LMF_CUT;
        }
        if (useTableEntryBool) {
            return MoveEnding::TABLE;
        }
    }
    return searchMove(position, variantLocal, alfa, beta, depth, maxVariantDepth);
}

// The same for a move that has to be searched, `maxVariantDepth` plies and then quiescence.
template <class Observer>
MoveEnding TreeSearch<Observer>::searchMove(Position& position, Variant& variantLocal, int alfa,
                                            int beta, int depth, int maxVariantDepth) {
    const int childAlfa = closerToCheckMate(-beta);
    const int childBeta = closerToCheckMate(-alfa);
    state.repetitionTable.increaseRepetitions(position.incremental.hash);
    const MoveEnding ending =
        maxVariantDepth != 0
            ? generateTreeRek(position, variantLocal, childAlfa, childBeta, depth + 1)
            : quiscenceSearchInner(position, childAlfa, childBeta, variantLocal);
    state.repetitionTable.decreaseRepetitions();
    if (state.nodes.isAbandoned()) {
        if (maxVariantDepth != 0) {
            logger.trace("Quitting in tree generator at depth ", depth);
        } else {
            logger.debug("Quitting in tree generator at depth ", depth);
        }
        return ending;
    }
    variantLocal.evaluation = furtherFromCheckMate(-variantLocal.evaluation);
    if (state.config.useTable) {
        state.table.addTableEntry(position, variantLocal.getFirstMove(), maxVariantDepth,
                                  variantLocal.evaluation, alfa, beta);
    }
    return ending;
}

template class TreeSearch<NoObserver>;
template class TreeSearch<ObservedBy>;
