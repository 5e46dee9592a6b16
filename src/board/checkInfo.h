// The checks that the side to move can give: from which squares each piece type attacks the enemy
// king, and which pieces discover a check by moving. Computed once per node.
#pragma once

#include "board/attackSets.h"
#include "board/position.h"

class CheckInfo {
public:
    // Keeps a reference to the position, which must not change while this object is in use.
    explicit CheckInfo(const Position& position);

    // Whether a legal move gives check.
    bool givesCheck(const Move& move) const {
        const bool isPlain =
            move.castle_ep_flag == ORDINARY_MOVE && move.promotionPieceType == NO_PIECE;
        return isPlain ? contains(getCheckingFields(move.pieceMoved, move.from), move.to)
                       : givesCheckOtherwise(move);
    }

    // The squares to which a move of a `type` piece from `from` gives check. Does not cover
    // promotions, castlings and en passant captures.
    FieldSet getCheckingFields(PieceType type, FieldIndex from) const {
        return contains(discoverers, from) ? fields[type] | ~lineOf(enemyKing, from) : fields[type];
    }

    // The pieces of the side to move that alone block the line of an own slider to the enemy king.
    FieldSet getDiscoverers() const { return discoverers; }

private:
    bool givesCheckOtherwise(const Move& move) const;

    const Position& position;
    FieldIndex enemyKing;
    ByType<FieldSet> fields; // the squares from which each type attacks the enemy king
    FieldSet discoverers = NO_FIELDS;
};
