// Checkers and pinned pieces of the side to move, computed once per node, and the legality test
// based on them.
#pragma once

#include "board/attackSets.h"
#include "board/position.h"

class CheckersAndPins {
public:
    // Keeps a reference to the position, which must not change while this object is in use.
    explicit CheckersAndPins(const Position& position);

    // Whether the side to move is in check. Kings are never adjacent, so the enemy king is ignored.
    bool isInCheck() const { return checkers != NO_FIELDS; }

    // The enemy pieces that give check.
    FieldSet getCheckers() const { return checkers; }

    // Own pieces that alone block the line of an enemy slider to the king.
    FieldSet getPinned() const { return pinned; }

    // The squares to which a piece on `from`, other than the king, may move without leaving its
    // king in check. Does not cover en passant captures, which vacate two squares.
    FieldSet getAllowedFields(FieldIndex from) const {
        return contains(pinned, from) ? checkEnders & lineOf(king, from) : checkEnders;
    }

    // The squares of `fields` that no enemy attacks once the king has left its square. Requires a
    // subset of the squares that the king attacks.
    FieldSet getSafeFields(FieldSet fields) const;

    // Whether a pseudo-legal en passant capture from `from` does not leave the king in check.
    bool allowsEnPassant(FieldIndex from) const;

private:
    const Position& position;
    FieldIndex king;
    FieldSet checkers = NO_FIELDS;
    FieldSet pinned = NO_FIELDS;
    // The squares to which a piece other than the king must move to end every check: all if there
    // is no check, none in a double check.
    FieldSet checkEnders = ALL_FIELDS;
};

// Whether a pseudo-legal move does not leave the mover's king in check. Requires
// `checkersAndPins` of the position before the move.
bool isLegal(const CheckersAndPins& checkersAndPins, const Move& move);
