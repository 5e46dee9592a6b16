#include "search/treeSearch.h"

#include "base/loggingService.h"
#include "board/makeMove.h"
#include "board/moveGenerator.h"
#include "search/score.h"
#include "search/treeNode.h"

#include <algorithm>
#include <vector>

namespace {

// Writes the pseudo-legal moves of a node and returns their number. At the root, writes only those
// in SearchState::rootMoves, unless that is empty.
int generateMovesAt(const TreeNode& node, SearchState& state, MoveArray& moves) {
    const int count = generateMoves(node.position, moves);
    if (node.depth > 0) {
        return count;
    }
    state.root = &node;
    const std::vector<Move>& rootMoves = state.rootMoves;
    if (rootMoves.empty()) {
        return count;
    }
    const auto isOther = [&rootMoves](const Move& move) {
        return std::none_of(rootMoves.begin(), rootMoves.end(),
                            [&move](const Move& other) { return testMoveEquality(move, other); });
    };
    const auto end = std::remove_if(moves.begin(), moves.begin() + count, isOther);
    return static_cast<int>(end - moves.begin());
}

} // namespace

template <class Observer>
MoveEnding TreeSearch<Observer>::generateTreeRek(Position& position, Variant& outputVar, int alfa,
                                                 int beta, int depth) {
    // The half-move clock is tested first: at its limit even a mate is a draw.
    if (position.incremental.halfMoveClock >= MAX_HALF_MOVE_CLOCK) {
        outputVar.clear(DRAW_EVALUATION);
        return MoveEnding::CLOCK;
    }

    TreeNode node(position, outputVar, alfa, beta, depth, state.actualMoveDepth - 1 - depth);
    MoveArray outMoves;
    MoveIndices moveOrderIndices;
    const int pseudoLegalMovesN = generateMovesAt(node, state, outMoves);
    observer.count(TestStatistics::ORDINAL_SEARCH_ALL, depth, pseudoLegalMovesN);
    state.order.orderMoves(outMoves, moveOrderIndices, pseudoLegalMovesN, depth,
                           state.table.getBestMoveHint(position));
    for (int i = 0; i < pseudoLegalMovesN; ++i) {
        const Move& move = outMoves[moveOrderIndices[i]];
        if (isLegal(node.pins, move) && !tryMove(node, move)) {
            outputVar.clear(beta);
            return MoveEnding::SEARCHED;
        }
    }

    if (node.numberOfLegalMoves == 0) {
        const bool isMate = node.pins.isInCheck();
        outputVar.evaluation = isMate ? MATED_EVALUATION : DRAW_EVALUATION;
        return isMate ? MoveEnding::CHECKMATE : MoveEnding::STALEMATE;
    }
    outputVar.evaluation = node.alfa;
    return MoveEnding::SEARCHED;
}

// Tries a legal move.
template <class Observer> bool TreeSearch<Observer>::tryMove(TreeNode& node, const Move& move) {
    observer.doMove(move);
    if (state.nodes.countTreeMoveAndPoll()) {
        logger.debug("Time up as checked in tree generator at depth ", node.depth);
        return false;
    }
    observer.count(TestStatistics::ORDINAL_SEARCH, node.depth, 1);
    ++node.numberOfLegalMoves;
    node.move = &move;

    node.localVariant.clear(0);
    DoMoveContext context;
    playMove(node.position, move, context);
    const MoveEnding ending = scoreMove(node);
    undoMove(node.position, move, context);
    if (state.nodes.isAbandoned()) {
        return false;
    }
    observer.explainTreeGenMove(node.alfa, node.beta, node.localVariant, move, ending);
    return isLmfCut(ending) || takeScore(node, move, ending);
}

// Scores the move that has just been played, for the side that made it. Stores the score and the
// line after the move in `localVariant`.
template <class Observer> MoveEnding TreeSearch<Observer>::scoreMove(TreeNode& node) {
    const Position& position = node.position;
    Variant& variantLocal = node.localVariant;
    // One earlier occurrence, in the game or on the path, counts as a draw.
    if (state.repetitionTable.isRepetition(position.incremental.hash,
                                           position.incremental.halfMoveClock)) {
        variantLocal.evaluation = DRAW_EVALUATION;
        return MoveEnding::REPETITION;
    }
    if (state.config.useTable) {
        const bool useTableEntryBool =
            state.table.useTableEntry(position, node.maxVariantDepth, variantLocal.evaluation);
        if (state.table.lmf(position, node.alfa, node.originalAlfa, node.maxVariantDepth)) {
            return useTableEntryBool ? MoveEnding::TABLE_LMF_CUT : MoveEnding::LMF_CUT;
        }
        if (useTableEntryBool) {
            return MoveEnding::TABLE;
        }
    }
    return searchMove(node);
}

// Scores the move by a search of `maxVariantDepth` plies, followed by quiescence.
template <class Observer> MoveEnding TreeSearch<Observer>::searchMove(TreeNode& node) {
    Position& position = node.position;
    Variant& variantLocal = node.localVariant;
    const int childAlfa = closerToCheckMate(-node.beta);
    const int childBeta = closerToCheckMate(-node.alfa);
    const bool isLeaf = node.maxVariantDepth == 0;
    state.repetitionTable.increaseRepetitions(position.incremental.hash);
    const MoveEnding ending =
        isLeaf ? quiscence.quiscenceSearchInner(position, childAlfa, childBeta, variantLocal)
               : generateTreeRek(position, variantLocal, childAlfa, childBeta, node.depth + 1);
    state.repetitionTable.decreaseRepetitions();
    if (state.nodes.isAbandoned()) {
        if (isLeaf) {
            logger.debug("Quitting in tree generator at depth ", node.depth);
        } else {
            logger.trace("Quitting in tree generator at depth ", node.depth);
        }
        return ending;
    }
    variantLocal.evaluation = furtherFromCheckMate(-variantLocal.evaluation);
    if (state.config.useTable) {
        state.table.addTableEntry(position, variantLocal.getFirstMove(), node.maxVariantDepth,
                                  variantLocal.evaluation, node.alfa, node.beta);
    }
    return ending;
}

// Compares the score in `localVariant` with the window, and raises alfa and replaces the line if it
// is a new best one. Returns false if it reaches beta.
template <class Observer>
bool TreeSearch<Observer>::takeScore(TreeNode& node, const Move& move, MoveEnding ending) {
    const int score = node.localVariant.evaluation;
    if (score >= node.beta) {
        if (move.pieceCaptured == NO_PIECE) {
            state.order.updateKiller(move, node.depth);
        }
        observer.count(TestStatistics::ORDINAL_SEARCH_CUTTOFS, node.depth, 1);
        return false;
    }
    if (score > node.alfa) {
        node.alfa = score;
        if (!node.variant.extend(node.localVariant, {move, false, isFromTable(ending), false})) {
            logger.error("Hard constraint MAX_VARIANT_MOVES hit!");
        }
    }
    return true;
}

template class TreeSearch<NoObserver>;
template class TreeSearch<CountedBy>;
template class TreeSearch<ObservedBy>;
