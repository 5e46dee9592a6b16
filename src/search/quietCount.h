// Quiet moves of the quiescence search that need not be tried, since nothing can come of them.
#pragma once

#include "board/setUp.h"
#include "search/quietGains.h"
#include "search/quiscenceNode.h"
#include "search/score.h"
#include "search/searchState.h"

// Counts quiet moves without trying them, where they cannot matter: they are scored as their
// positions stand, give no check, cannot be a repetition, and do not raise alfa. Where somebody
// watches, each is tried.
class QuietCount {
public:
    QuietCount(QuiscenceNode& _node, SearchState& _state, bool isWatched)
        : node(_node), state(_state) {
        const IncrementalState& incremental = node.position.incremental;
        const bool isStatic = !node.isInCheckOriginally || node.isDeepestPly;
        const bool canBeDraw = node.alfa < DRAW_EVALUATION &&
                               state.repetitionTable.canRepeat(incremental.halfMoveClock + 1);
        if (isStatic && !canBeDraw && !isWatched) {
            const int material = totalMaterial(node.position);
            score = node.getStaticScore(incremental.sum, material, node.material);
            gains = &getGreatestGains(node.position.colorToMove, material <= END_GAME_MAX_MATERIAL);
        }
    }

    // Those of the free fields that a piece goes to where nothing can come of its moves.
    FieldSet getNegligible(const PieceTargets& piece, FieldSet fields) const {
        const Position& position = node.position;
        if (score == NOTHING_COUNTS ||
            (piece.type == PAWN && isBeforePromotion(piece.from, position.colorToMove))) {
            return NO_FIELDS;
        }
        if (!node.isDeepestPly) {
            fields &= ~node.checkInfo->getFields(piece.type, piece.from);
        }
        if (score + (*gains)[piece.type][piece.from] <= node.alfa) {
            return fields;
        }
        const auto& sums = pieceSums[position.colorToMove][piece.type];
        const int material = totalMaterial(position);
        PieceSum others = position.incremental.sum;
        others -= sums[piece.from];
        FieldSet negligible = fields;
        forEachField(fields, [&](FieldIndex to) {
            PieceSum sum = others;
            sum += sums[to];
            if (node.getStaticScore(sum, material, node.material) > node.alfa) {
                negligible &= ~setOf(to);
            }
        });
        return negligible;
    }

    // Counts some moves. False if they have to be tried all the same, as the clock may be due.
    bool count(int moves) const {
        if (!state.nodes.isFarFromPoll(moves)) {
            return false;
        }
        state.nodes.countMoves(moves);
        node.numberOfLegalMoves += moves;
        return true;
    }

    // The moves of all pawns, if they are all the same to the king and stand together in the
    // order of moves.
    bool countPawns() const {
        const Color color = node.position.colorToMove;
        const FieldSet pawns = node.position.getPieces(color, PAWN);
        const FieldSet singleSteps = node.targets.getSingleSteps();
        const FieldSet doubleSteps = node.targets.getDoubleSteps();
        if (score + GREATEST_PAWN_GAIN > node.alfa || (pawns & node.lines.getPinned()) != 0 ||
            ((singleSteps & promotionRanks) | (pawns & getDiscoverers())) != 0 ||
            doPawnsCheck(singleSteps | doubleSteps) || !node.targets.arePawnsTogether()) {
            return false;
        }
        const FieldSet allowed = node.lines.getAllowedFields(NO_FIELD);
        return count(countOf(singleSteps & allowed) + countOf(doubleSteps & allowed));
    }

private:
    static constexpr FieldSet promotionRanks = fieldsFromTo(A1, H1) | fieldsFromTo(A8, H8);
    // As a score: beyond every alfa, a mate's too, by more than any move loses.
    static constexpr std::int64_t NOTHING_COUNTS = 2 * std::int64_t{DEFAULT_FIRST_BETA};

    FieldSet getDiscoverers() const {
        return node.isDeepestPly ? NO_FIELDS : node.checkInfo->getDiscoverers();
    }
    // Whether a pawn on one of the fields attacks the king, where that counts.
    bool doPawnsCheck(FieldSet fields) const {
        return !node.isDeepestPly && (fields & node.checkInfo->getFields(PAWN, NO_FIELD)) != 0;
    }

    QuiscenceNode& node;
    SearchState& state;
    std::int64_t score = NOTHING_COUNTS; // static, before any move
    // Of the side to move, in this phase; any while nothing counts.
    const ByType<ByField<int>>* gains = &greatestGainsOf<WHITE, false>;
};
