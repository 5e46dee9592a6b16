// Whether a square is attacked, and whether a king is in check.
#pragma once

#include "board/attackSets.h"
#include "board/position.h"

// The rooks, bishops and queens of both colours on whose lines `field` lies, whatever is in
// between.
inline FieldSet slidersTowards(const Position& position, FieldIndex field) {
    const ByType<FieldSet>& ofType = position.ofType;
    return (rookLines[field] & (ofType[ROOK] | ofType[QUEEN])) |
           (bishopLines[field] & (ofType[BISHOP] | ofType[QUEEN]));
}

// Whether a piece in `attackers` (of the side not to move) attacks `field`, with sliders blocked
// by `occupied`. Whatever is on `field` itself is ignored.
inline bool isAttacked(const Position& position, FieldIndex field, FieldSet attackers,
                       FieldSet occupied) {
    const ByType<FieldSet>& ofType = position.ofType;
    // Attacks are symmetric: a knight on `field` attacks exactly the squares from which knights
    // attack it. For pawns the colour changes.
    const FieldSet atOneStep = (pawnAttacks[position.colorToMove][field] & ofType[PAWN]) |
                               (knightAttacks[field] & ofType[KNIGHT]) |
                               (kingAttacks[field] & ofType[KING]);
    if ((atOneStep & attackers) != NO_FIELDS) {
        return true;
    }
    FieldSet sliders = slidersTowards(position, field) & attackers;
    for (; sliders != NO_FIELDS; sliders &= sliders - 1) {
        if ((betweenOf(field, firstOf(sliders)) & occupied) == NO_FIELDS) {
            return true;
        }
    }
    return false;
}

// Whether a piece of the side not to move attacks square `field`. Whatever is on that square
// is ignored.
bool isFieldThreatened(const Position& position, FieldIndex field);

// Whether the side to move is in check. Neither reads nor writes position.check.
bool isInCheckNoCaching(const Position& position);

// Whether the side to move is in check. Caches the answer in position.check until the position
// changes.
bool isInCheck(const Position& position);
