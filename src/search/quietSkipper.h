// Skips quiet moves of the quiescence search that cannot raise alfa. They still count as nodes.
#pragma once

#include "board/setUp.h"
#include "search/quietBounds.h"
#include "search/quiscenceNode.h"
#include "search/score.h"
#include "search/searchState.h"

// A quiet move gets the static score after it, unless it gives check or repeats a position. It can
// be skipped if that score is known not to raise alfa. A repetition can be skipped too if alfa is
// at or above the draw score: a draw does not beat it, and alfa only rises.
class QuietSkipper {
public:
    // A watched search skips nothing.
    QuietSkipper(QuiscenceNode& _node, SearchState& _state, bool isWatched)
        : node(_node), state(_state) {
        const Position& position = node.position;
        const bool isStatic = !node.isInCheckOriginally || node.isDeepestPly;
        const bool canBeDraw =
            node.alfa < DRAW_EVALUATION &&
            state.repetitionTable.canRepeat(position.incremental.halfMoveClock + 1);
        if (isStatic && !canBeDraw && !isWatched) {
            allMaterial = totalMaterial(position);
            score = scoreOf(position.incremental.sum);
            bounds = &getQuietBounds(position.colorToMove, isEndGame(allMaterial));
        }
    }

    // Of `fields`, free squares that a piece may legally go to, those whose moves can be skipped.
    FieldSet getSkippable(const PieceTargets& piece, FieldSet fields) const {
        const Position& position = node.position;
        if (score == SKIP_NOTHING ||
            (piece.type == PAWN && isBeforePromotion(piece.from, position.colorToMove))) {
            return NO_FIELDS;
        }
        if (!node.isDeepestPly) {
            fields &= ~node.checkInfo->getFields(piece.type, piece.from);
        }
        return score + (*bounds)[piece.type][piece.from] <= node.alfa
                   ? fields
                   : getFieldsNotAboveAlfa(piece, fields);
    }

    // Skips `moves` moves. False if they have to be tried after all, because a poll is due
    // among them.
    bool trySkip(int moves) {
        if (!state.nodes.isFarFromPoll(moves)) {
            return false;
        }
        state.nodes.countMoves(moves);
        node.numberOfLegalMoves += moves;
        return true;
    }

    // Skips the steps of all pawns at once, where one bound holds for all of them: none can raise
    // alfa, promotes, or gives check, directly or by discovery. No pawn may be pinned, as then the
    // legal steps could not be counted as a set, and no other piece may come between the pawns in
    // list order, as a poll or a cut-off in between would then see another count.
    bool trySkipPawns() {
        const FieldSet pawns = node.position.getPieces(node.position.colorToMove, PAWN);
        const FieldSet singleSteps = node.moves.getSingleSteps();
        const FieldSet doubleSteps = node.moves.getDoubleSteps();
        const bool canPromote = (singleSteps & promotionRanks) != NO_FIELDS;
        if (score + PAWN_STEP_BOUND > node.alfa || (pawns & node.pins.getPinned()) != NO_FIELDS ||
            canPromote || canPawnsCheck(pawns, singleSteps | doubleSteps) ||
            !node.moves.pawnsLeadTheList()) {
            return false;
        }
        const FieldSet allowed = node.pins.getAllowedFields(NO_FIELD);
        return trySkip(countOf(singleSteps & allowed) + countOf(doubleSteps & allowed));
    }

private:
    static constexpr FieldSet promotionRanks = fieldsFromTo(A1, H1) | fieldsFromTo(A8, H8);
    // Sentinel for `score` above every possible alfa, so that nothing is skipped.
    static constexpr std::int64_t SKIP_NOTHING = 2 * std::int64_t{DEFAULT_FIRST_BETA};

    // The static score for the side to move if its quiet move leads to `sum`.
    int scoreOf(PieceSum sum) const {
        return staticScore(sum, node.material, allMaterial, node.position.colorToMove);
    }

    FieldSet getFieldsNotAboveAlfa(const PieceTargets& piece, FieldSet fields) const {
        const auto& sums = pieceSums[node.position.colorToMove][piece.type];
        PieceSum others = node.position.incremental.sum;
        others -= sums[piece.from];
        FieldSet skippable = fields;
        forEachField(fields, [&](FieldIndex to) {
            PieceSum sum = others;
            sum += sums[to];
            if (scoreOf(sum) > node.alfa) {
                skippable &= ~setOf(to);
            }
        });
        return skippable;
    }

    // Whether a pawn step to one of `steps` can give check. Checks count only where they are
    // searched.
    bool canPawnsCheck(FieldSet pawns, FieldSet steps) const {
        return !node.isDeepestPly &&
               ((pawns & node.checkInfo->getDiscoverers()) |
                (steps & node.checkInfo->getFields(PAWN, NO_FIELD))) != NO_FIELDS;
    }

    QuiscenceNode& node;
    SearchState& state;
    std::int64_t score = SKIP_NOTHING; // static, before any move
    int allMaterial = 0;               // of both sides; a quiet move keeps it
    // Of the side to move in this phase; any table while nothing is skipped.
    const QuietBounds* bounds = &quietBoundsOf<WHITE, false>;
};
