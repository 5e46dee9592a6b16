// What bears on the king of the side to move, from one look along its lines: who gives check,
// which men are pinned, and so which moves are legal without making them.
#pragma once

#include "board/attackSets.h"
#include "board/position.h"

class CheckersAndPins {
public:
    explicit CheckersAndPins(const Position& position);

    bool isInCheck() const { return checkers != NO_FIELDS; }

    // Own men that stop an enemy slider on its way to the king.
    FieldSet getPinned() const { return pinned; }

    // The fields that a piece on `from` other than the king may go to, as far as the king is
    // concerned. En passant is not decided by that: two men leave their fields at once.
    FieldSet getAllowedFields(FieldIndex from) const {
        return contains(pinned, from) ? answers & lineOf(king, from) : answers;
    }

    // Those of the fields that the king itself attacks to which it may go: no enemy attacks it
    // there, also not through the field that the king leaves.
    FieldSet getSafeFields(FieldSet fields) const;

    // Whether a pseudo-legal en passant capture from `from` leaves the king unattacked.
    bool allowsEnPassant(FieldIndex from) const;

private:
    const Position& position;
    FieldIndex king;
    FieldSet checkers = NO_FIELDS;
    FieldSet pinned = NO_FIELDS;
    // The fields on which another piece ends every check: all without a check, none in a
    // double check.
    FieldSet answers = ALL_FIELDS;
};

// Whether a pseudo-legal move of the position that `lines` was made of leaves the mover's king
// unattacked.
bool isLegal(const CheckersAndPins& lines, const Move& move);
