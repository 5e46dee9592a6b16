// How the side to move can give check, from one look along the lines of the enemy king.
#pragma once

#include "board/attackSets.h"
#include "board/position.h"

class CheckInfo {
public:
    explicit CheckInfo(const Position& position);

    // Whether a legal move gives check.
    bool givesCheck(const Move& move) const {
        const bool isPlain =
            move.castle_ep_flag == ORDINARY_MOVE && move.promotionPieceType == NO_PIECE;
        return isPlain ? contains(getFields(move.pieceMoved, move.from), move.to)
                       : givesCheckOtherwise(move);
    }

    // The fields on which a move from `from` gives check, by a piece of that kind as it
    // arrives. Promotions, castlings and en passant are not decided by that.
    FieldSet getFields(PieceType type, FieldIndex from) const {
        return contains(discoverers, from) ? fields[type] | ~lineOf(enemyKing, from) : fields[type];
    }

    // Own men that stop an own slider on its way to the enemy king.
    FieldSet getDiscoverers() const { return discoverers; }

private:
    bool givesCheckOtherwise(const Move& move) const;

    const Position& position;
    FieldIndex enemyKing;
    ByType<FieldSet> fields;          // from which a kind attacks the enemy king
    FieldSet discoverers = NO_FIELDS; // men that stop an own slider on its way to it
};
