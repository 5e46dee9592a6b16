// Which fields are attacked, and whether a king is in check.
#pragma once

#include "board/attackSets.h"
#include "board/position.h"

// The rooks, bishops and queens of both colours that a field has on a line of theirs, whatever
// stands between.
inline FieldSet slidersTowards(const Position& position, FieldIndex field) {
    const ByType<FieldSet>& ofType = position.ofType;
    return (rookLines[field] & (ofType[ROOK] | ofType[QUEEN])) |
           (bishopLines[field] & (ofType[BISHOP] | ofType[QUEEN]));
}

// Whether one of `attackers`, men of the side not to move, attacks a field, if just the fields
// of `occupied` stop a slider. What stands on the field itself plays no part.
inline bool isAttacked(const Position& position, FieldIndex field, FieldSet attackers,
                       FieldSet occupied) {
    const ByType<FieldSet>& ofType = position.ofType;
    // What an own piece on the field would attack, attacks it as the same kind of piece.
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

// Whether a piece of the side not to move attacks field `policko`. What stands on that
// field plays no part.
bool isFieldThreatened(const Position& pozice, FieldIndex policko);

// Whether the king of the side to move is attacked. It neither uses the remembered answer
// nor remembers its own.
bool isInCheckNoCaching(const Position& position);

// Whether the side to move is in check. The answer is remembered in position.check and
// served from there until the position changes.
bool isInCheck(const Position& position);
