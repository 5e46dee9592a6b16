#include "search/quiscence.h"

#include "base/loggingService.h"
#include "board/afterMove.h"
#include "board/attacks.h"
#include "board/makeMove.h"
#include "search/evaluation.h"
#include "search/quietSkipper.h"
#include "search/quiscenceNode.h"
#include "search/score.h"

namespace {

// Whether a move captures, promotes or gives check, so that the search goes deeper.
bool isMoveInteresting(const Move& move, const CheckInfo& checkInfo) {
    return move.pieceCaptured != NO_PIECE || move.promotionPieceType != NO_PIECE ||
           checkInfo.givesCheck(move);
}

// The static score after a move, for the side that makes it. `material` is its balance of material
// after the move.
[[gnu::always_inline]] inline int staticScoreAfter(const Position& position, const Move& move,
                                                   int material) {
    return staticScore(getSumAfter(position, move), material, getTotalMaterialAfter(position, move),
                       position.colorToMove);
}

} // namespace

template <class Observer>
MoveEnding Quiscence<Observer>::quiscenceSearchInner(Position& position, int alfa, int beta,
                                                     Variant& variant) {
    if (state.getQuiscenceMaxDepth() == 0) {
        // The bounds are deliberately not negated, although totalEval() scores the other side.
        variant.evaluation = -totalEval(position, alfa, beta);
        return MoveEnding::NO_QUISCENCE;
    }
    // Standing pat. The score is not limited to beta.
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
    QuiscenceNode node(position, variant, alfa, beta, depth, isDeepestPly);
    if constexpr (Observer::IS_COUNTING) {
        observer.count(TestStatistics::Q_SEARCH_ALL, depth, node.moves.getCount());
    }
    const bool isOver = !tryCaptures(node) || !tryQuietMoves(node);
    observer.count(TestStatistics::Q_SEARCH, depth, node.numberOfLegalMoves);

    if (isOver) {
        observer.count(TestStatistics::Q_CUTTOFS, depth, state.nodes.isAbandoned() ? 0 : 1);
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

// Tries the legal captures, best attack first; see orderMoves().
template <class Observer> bool Quiscence<Observer>::tryCaptures(QuiscenceNode& node) {
    if (node.moves.getCapturers() == 0) {
        return true;
    }
    const Position& position = node.position;
    const FieldSet enemies = position.ofColor[position.oppositeColorToMove()];
    MoveArray captures;
    int count = 0;
    const auto append = [&](const Move& move) { captures[count++] = move; };
    const Color color = position.colorToMove;
    const auto listCaptures = [&](const PieceTargets& piece) {
        const FieldSet fields = node.getLegalFields(piece, piece.targets & enemies);
        forEachTarget(piece, fields, color, [&](FieldIndex to) {
            forEachMoveTo(piece, to, position.board[to].pieceType, color, append);
        });
        if (piece.type == PAWN && node.moves.canTakeEnPassant(piece.from) &&
            node.pins.allowsEnPassant(piece.from)) {
            append(makeEnPassant(position, piece.from));
        }
    };
    node.moves.forEachPiece<PawnMoves::CAPTURES>(node.moves.getCapturers(), listCaptures);

    MoveIndices moveOrderIndices;
    moveOrderIndices[0] = 0;
    if (count > 1) {
        orderMoves(captures, moveOrderIndices, count);
    }
    for (int i = 0; i < count; ++i) {
        if (!tryMove(node, captures[moveOrderIndices[i]])) {
            return false;
        }
    }
    return true;
}

// Tries the legal moves that capture nothing, in the order of the generator.
template <class Observer> bool Quiscence<Observer>::tryQuietMoves(QuiscenceNode& node) {
    const Color color = node.position.colorToMove;
    QuietSkipper skipper(node, state, Observer::IS_WATCHING);
    const EntrySet king = entrySetOf(KingIndex[color]);
    if (!tryQuietMovesOf(node, king, skipper)) {
        return false;
    }
    for (const bool queenSide : {true, false}) {
        if (node.moves.canCastle(queenSide) &&
            !tryMove(node, makeCastling(node.position, queenSide))) {
            return false;
        }
    }
    const bool canOthersMove =
        (node.pins.getAllowedFields(NO_FIELD) & ~node.position.getOccupied()) != NO_FIELDS;
    if (!canOthersMove) {
        return true;
    }
    const EntrySet skipped = skipper.trySkipPawns() ? node.position.pawnEntries : 0;
    const EntrySet pieces = node.position.entries & ENTRIES_OF[color];
    return tryQuietMovesOf(node, pieces & ~king & ~skipped, skipper);
}

// Tries the quiet moves of the pieces in `entries`, without castlings.
template <class Observer>
bool Quiscence<Observer>::tryQuietMovesOf(QuiscenceNode& node, EntrySet entries,
                                          QuietSkipper& skipper) {
    const Color color = node.position.colorToMove;
    const FieldSet free = ~node.position.getOccupied();
    const auto tryIt = [&](const Move& move) { return tryMove(node, move); };
    return node.moves.forEachPiece<PawnMoves::STEPS>(entries, [&](const PieceTargets& piece) {
        const FieldSet fields = node.getLegalFields(piece, piece.targets & free);
        const FieldSet skippable = skipper.getSkippable(piece, fields);
        if (skippable == fields && skipper.trySkip(countOf(fields))) {
            return true;
        }
        return forEachTarget(piece, fields, color, [&](FieldIndex to) {
            return (contains(skippable, to) && skipper.trySkip(1)) ||
                   forEachMoveTo(piece, to, NO_PIECE, color, tryIt);
        });
    });
}

// Tries a legal move.
template <class Observer> bool Quiscence<Observer>::tryMove(QuiscenceNode& node, const Move& move) {
    observer.doMove(move);
    if (state.nodes.countMoveAndPoll()) {
        logger.debug("Time up as checked in quiscence generator at depth ", node.depth);
        return false;
    }
    ++node.numberOfLegalMoves;
    node.localVariant.clear(0);
    const MoveEnding ending = scoreQuiscenceMove(node, move);
    if (state.nodes.isAbandoned()) {
        logger.trace("Quitting in quiscence generator at depth ", node.depth);
        return false;
    }
    observer.explainQuiscenceMove(node.alfa, node.beta, node.localVariant, move, ending);

    const int score = node.localVariant.evaluation;
    if (score >= node.beta) {
        return false;
    }
    if (score > node.alfa) {
        node.alfa = score;
        node.variant.extend(node.localVariant, {move, true, false, false});
    }
    return true;
}

// Scores a legal move for the side that makes it. Stores the score and, if the move is searched,
// the line after it in `localVariant`.
template <class Observer>
MoveEnding Quiscence<Observer>::scoreQuiscenceMove(QuiscenceNode& node, const Move& move) {
    const Position& position = node.position;
    const int clock = position.incremental.halfMoveClock + 1;
    if (state.repetitionTable.canRepeat(clock) && canRepeatPosition(move) &&
        state.repetitionTable.isRepetition(getRepeatedKey(position, move), clock)) {
        node.localVariant.evaluation = DRAW_EVALUATION;
        return MoveEnding::REPETITION;
    }
    const int material = node.material + getMaterialGain(move);
    if (node.isDeepestPly) {
        node.localVariant.evaluation = staticScoreAfter(position, move, material);
        return endingAtDeepestPly(node, move);
    }
    if (!node.isInCheckOriginally) {
        if (!isMoveInteresting(move, *node.checkInfo)) {
            node.localVariant.evaluation = staticScoreAfter(position, move, material);
            return MoveEnding::QUIET;
        }
        const std::int64_t reach = std::int64_t{state.config.quiscenceDeltaWindow} + material;
        if (reach < node.alfa && !node.checkInfo->givesCheck(move)) {
            node.localVariant.evaluation = material;
            return MoveEnding::OUT_OF_REACH;
        }
    }
    return searchMove(node, move);
}

// At the deepest ply quiet and other moves are scored alike; only reports distinguish them.
template <class Observer>
MoveEnding Quiscence<Observer>::endingAtDeepestPly(const QuiscenceNode& node, const Move& move) {
    const bool isQuiet = Observer::IS_WATCHING && !node.isInCheckOriginally &&
                         !isMoveInteresting(move, CheckInfo(node.position));
    return isQuiet ? MoveEnding::QUIET : MoveEnding::DEEPEST_PLY;
}

// Scores a legal move by searching the position after it.
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
template class Quiscence<CountedBy>;
template class Quiscence<ObservedBy>;
