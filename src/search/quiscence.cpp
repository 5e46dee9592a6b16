#include "search/quiscence.h"

#include "base/loggingService.h"
#include "board/afterMove.h"
#include "board/attacks.h"
#include "board/makeMove.h"
#include "search/evaluation.h"
#include "search/quietCount.h"
#include "search/quiscenceNode.h"
#include "search/score.h"
#include "search/statistics.h"

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
    if (position.incremental.halfMoveClock >= MAX_HALF_MOVE_CLOCK) {
        variant.clear(DRAW_EVALUATION);
        return MoveEnding::CLOCK;
    }

    const bool isDeepestPly = depth >= state.getQuiscenceMaxDepth() - 1;
    QuiscenceNode node(position, variant, alfa, beta, depth, isDeepestPly, Observer::IS_WATCHING);
    statsIncrement(TestStatistics::Q_SEARCH_ALL, depth, node.targets.getCount());
    Next next = node.targets.getCapturers() != 0 ? tryCaptures(node) : Next::MOVE;
    if (next == Next::MOVE) {
        next = tryQuietMoves(node);
    }
    statsIncrement(TestStatistics::Q_SEARCH, depth, node.numberOfLegalMoves);

    if (next != Next::MOVE) {
        statsIncrement(TestStatistics::Q_CUTTOFS, depth, next == Next::CUT_OFF ? 1 : 0);
        variant.clear(beta);
        return MoveEnding::SEARCHED;
    }
    if (node.numberOfLegalMoves == 0) {
        variant.evaluation = node.isInCheckOriginally ? MATED_EVALUATION : DRAW_EVALUATION;
        return node.isInCheckOriginally ? MoveEnding::CHECKMATE : MoveEnding::STALEMATE;
    }
    variant.evaluation = node.alfa;
    return MoveEnding::SEARCHED;
}

// The legal ones, best attack first; see orderMoves().
template <class Observer> auto Quiscence<Observer>::tryCaptures(QuiscenceNode& node) -> Next {
    const Position& position = node.position;
    const FieldSet enemies = position.ofColor[position.oppositeColorToMove()];
    MoveArray captures;
    int count = 0;
    const auto append = [&](const Move& move) {
        captures[count++] = move;
        return true;
    };
    const Color color = position.colorToMove;
    const auto listCaptures = [&](const PieceTargets& piece) {
        const FieldSet fields = node.getLegalFields(piece, piece.targets & enemies);
        forEachTarget(piece, fields, color, [&](FieldIndex to) {
            return forEachMoveTo(piece, to, position.board[to].pieceType, color, append);
        });
        if (piece.type == PAWN && node.targets.canTakeEnPassant(piece.from) &&
            node.lines.allowsEnPassant(piece.from)) {
            append(makeEnPassant(position, piece.from));
        }
        return true;
    };
    node.targets.forEachPiece<PawnMoves::CAPTURES>(node.targets.getCapturers(), listCaptures);

    MoveIndices moveOrderIndices;
    moveOrderIndices[0] = 0;
    if (count > 1) {
        orderMoves(captures, moveOrderIndices, count);
    }
    for (int i = 0; i < count; ++i) {
        if (const Next next = tryMove(node, captures[moveOrderIndices[i]]); next != Next::MOVE) {
            return next;
        }
    }
    return Next::MOVE;
}

// All that captures nothing, in the order of the generator.
template <class Observer> auto Quiscence<Observer>::tryQuietMoves(QuiscenceNode& node) -> Next {
    const Color color = node.position.colorToMove;
    const QuietCount quietCount(node, state, Observer::IS_WATCHING);
    const EntrySet pieces = node.position.entries & ENTRIES_OF[color];
    const EntrySet king = entrySetOf(KingIndex[color]);
    Next next = tryQuietMovesOf(node, king, quietCount);
    for (const bool queenSide : {true, false}) {
        if (next == Next::MOVE && node.targets.canCastle(queenSide)) {
            next = tryMove(node, makeCastling(node.position, queenSide));
        }
    }
    const bool canOthersMove =
        (node.lines.getAllowedFields(NO_FIELD) & ~node.position.getOccupied()) != NO_FIELDS;
    if (next == Next::MOVE && canOthersMove) {
        const EntrySet counted = quietCount.countPawns() ? node.position.pawnEntries : 0;
        next = tryQuietMovesOf(node, pieces & ~king & ~counted, quietCount);
    }
    return next;
}

// Those of the pieces in some entries of the list.
template <class Observer>
auto Quiscence<Observer>::tryQuietMovesOf(QuiscenceNode& node, EntrySet entries,
                                          const QuietCount& quietCount) -> Next {
    const Position& position = node.position;
    const FieldSet free = ~position.getOccupied();
    Next next = Next::MOVE;
    const auto tryIt = [&](const Move& move) {
        next = tryMove(node, move);
        return next == Next::MOVE;
    };
    node.targets.forEachPiece<PawnMoves::STEPS>(entries, [&](const PieceTargets& piece) {
        const FieldSet fields = node.getLegalFields(piece, piece.targets & free);
        const FieldSet negligible = quietCount.getNegligible(piece, fields);
        if (negligible == fields && quietCount.count(countOf(fields))) {
            return true; // on to the next piece
        }
        forEachTarget(piece, fields, position.colorToMove, [&](FieldIndex to) {
            return (contains(negligible, to) && quietCount.count(1)) ||
                   forEachMoveTo(piece, to, NO_PIECE, position.colorToMove, tryIt);
        });
        return next == Next::MOVE;
    });
    return next;
}

// Tries a legal move.
template <class Observer>
auto Quiscence<Observer>::tryMove(QuiscenceNode& node, const Move& move) -> Next {
    observer.doMove(move);
    if (state.nodes.countMoveAndPoll()) {
        logger.debug("Time up as checked in quiscence generator at depth ", node.depth);
        return Next::ABANDON;
    }
    ++node.numberOfLegalMoves;
    node.localVariant.clear(0);
    const MoveEnding ending = scoreQuiscenceMove(node, move);
    if (state.nodes.isAbandoned()) {
        logger.trace("Quitting in quiscence generator at depth ", node.depth);
        return Next::ABANDON;
    }
    observer.explainQuiscenceMove(node.alfa, node.beta, node.localVariant, move, ending);

    const int score = node.localVariant.evaluation;
    if (score >= node.beta) {
        return Next::CUT_OFF;
    }
    if (score > node.alfa) {
        node.alfa = score;
        node.variant.extend(node.localVariant, {move, true, false, false});
    }
    return Next::MOVE;
}

// Scores a legal move for the side that makes it, and tells how. If the move is searched
// further, `localVariant` gets the line behind it as well.
template <class Observer>
MoveEnding Quiscence<Observer>::scoreQuiscenceMove(QuiscenceNode& node, const Move& move) {
    const Position& position = node.position;
    const int clock = position.incremental.halfMoveClock + 1;
    if (state.repetitionTable.canRepeat(clock) && isReversible(position, move) &&
        state.repetitionTable.isRepetition(getKeyAfter(position, move), clock)) {
        node.localVariant.evaluation = DRAW_EVALUATION;
        return MoveEnding::REPETITION;
    }
    if (!node.isInCheckOriginally || node.isDeepestPly) {
        const int material = node.material + getMaterialGain(move);
        const bool isQuiet = !node.isMoveInteresting(move);
        if (isQuiet || node.isDeepestPly) {
            node.localVariant.evaluation = node.getStaticScore(
                getSumAfter(position, move), getTotalMaterialAfter(position, move), material);
            return isQuiet ? MoveEnding::QUIET : MoveEnding::DEEPEST_PLY;
        }
        const std::int64_t reach = std::int64_t{state.config.quiscenceDeltaWindow} + material;
        if (reach < node.alfa && !node.checkInfo->givesCheck(move)) {
            node.localVariant.evaluation = material;
            return MoveEnding::OUT_OF_REACH;
        }
    }
    return searchMove(node, move);
}

// The same for a move that is searched further.
template <class Observer>
MoveEnding Quiscence<Observer>::searchMove(QuiscenceNode& node, const Move& move) {
    DoMoveContext context;
    playMove(node.position, move, context);
    state.repetitionTable.increaseRepetitions(node.position.incremental.hash);
    const MoveEnding ending =
        quiscenceSearchRek(node.position, node.localVariant, closerToCheckMate(-node.beta),
                           closerToCheckMate(-node.alfa), node.depth + 1);
    state.repetitionTable.decreaseRepetitions();
    undoMove(node.position, move, context);
    node.localVariant.evaluation = furtherFromCheckMate(-node.localVariant.evaluation);
    return ending;
}

template class Quiscence<NoObserver>;
template class Quiscence<ObservedBy>;
