// Skips quiet moves of the quiescence search that cannot raise alfa. They still count as nodes.
#pragma once

#include "board/setUp.h"
#include "search/quietBounds.h"
#include "search/quiscenceNode.h"
#include "search/score.h"
#include "search/searchState.h"

// The score of a quiet move is the static score after it, unless it gives check or repeats a
// position. The move can be skipped if that score cannot raise alfa. A repetition can be skipped if
// alfa is at or above the draw score, because alfa only rises.
class QuietSkipper {
public:
    // `isWatched`: every move is to be reported, so none is skipped.
    QuietSkipper(QuiscenceNode& _node, SearchState& _state, bool isWatched)
        : node(_node), state(_state) {
        const Position& position = node.position;
        const bool isStatic = !node.isInCheckOriginally || node.isDeepestPly;
        const bool canBeDraw =
            node.alfa < DRAW_EVALUATION &&
            state.repetitionTable.canRepeat(position.incremental.halfMoveClock + 1);
        if (isStatic && !canBeDraw && !isWatched) {
            totalMaterial = ::totalMaterial(position);
            score = scoreOf(position.incremental.sum);
            bounds = &getQuietBounds(position.colorToMove, isEndGame(totalMaterial));
        }
    }

    // The squares of `fields` whose moves can be skipped. Requires empty squares to which the piece
    // may legally move.
    FieldSet getSkippable(const PieceTargets& piece, FieldSet fields) const {
        const Position& position = node.position;
        if (score == SKIP_NOTHING ||
            (piece.type == PAWN && isBeforePromotion(piece.from, position.colorToMove))) {
            return NO_FIELDS;
        }
        if (!node.isDeepestPly) {
            fields &= ~node.checkInfo->getCheckingFields(piece.type, piece.from);
        }
        return score + (*bounds)[piece.type][piece.from] <= node.alfa
                   ? fields
                   : getFieldsNotAboveAlfa(piece, fields);
    }

    // Counts `moves` moves as skipped and returns true. If a poll is due among them, counts nothing
    // and returns false; the moves must then be tried.
    bool trySkip(int moves) {
        if (!state.nodes.isFarFromPoll(moves)) {
            return false;
        }
        state.nodes.countMoves(moves);
        node.numberOfLegalMoves += moves;
        return true;
    }

    // Skips the legal steps of all pawns at once and returns true, if
    // - no step can raise alfa,
    // - no pawn is pinned, so that the legal steps can be counted as a set,
    // - no step promotes,
    // - no step gives check, directly or by discovery,
    // - the pawns directly follow the king in list order, so that every other move is tried at the
    //   same node count as without skipping, and
    // - no poll is due among the steps.
    // Otherwise skips nothing and returns false.
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

    // The static score for the side to move if a quiet move leads to `sum`.
    int scoreOf(PieceSum sum) const {
        return staticScore(sum, node.material, totalMaterial, node.position.colorToMove);
    }

    // The squares of `fields` where the exact static score does not raise alfa.
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

    // Whether a pawn step to one of `steps` can give check. Always false at the deepest ply, where
    // checks are not searched.
    bool canPawnsCheck(FieldSet pawns, FieldSet steps) const {
        return !node.isDeepestPly &&
               ((pawns & node.checkInfo->getDiscoverers()) |
                (steps & node.checkInfo->getCheckingFields(PAWN, NO_FIELD))) != NO_FIELDS;
    }

    QuiscenceNode& node;
    SearchState& state;
    // The static score before any move, for the side to move, or SKIP_NOTHING.
    std::int64_t score = SKIP_NOTHING;
    int totalMaterial = 0; // of both sides; a quiet move does not change it
    // The table of the side to move in this phase; not used with SKIP_NOTHING.
    const QuietBounds* bounds = &quietBoundsOf<WHITE, false>;
};
