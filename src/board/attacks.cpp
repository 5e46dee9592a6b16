#include "board/attacks.h"

FieldSet attackersOf(const Position& position, FieldIndex field, Color attacker,
                     FieldSet occupied) {
    const ByType<FieldSet>& ofType = position.ofType;
    // What a piece on the field would attack, attacks it as the same kind of piece.
    FieldSet attackers = (pawnAttacks[opposite(attacker)][field] & ofType[PAWN]) |
                         (knightAttacks[field] & ofType[KNIGHT]) |
                         (kingAttacks[field] & ofType[KING]);
    const FieldSet straight = rookLines[field] & (ofType[ROOK] | ofType[QUEEN]);
    const FieldSet diagonal = bishopLines[field] & (ofType[BISHOP] | ofType[QUEEN]);
    forEachField((straight | diagonal) & position.ofColor[attacker], [&](FieldIndex slider) {
        if ((betweenOf(field, slider) & occupied) == NO_FIELDS) {
            attackers |= setOf(slider);
        }
    });
    return attackers & position.ofColor[attacker];
}

bool isFieldThreatened(const Position& pozice, FieldIndex policko) {
    return attackersOf(pozice, policko, pozice.oppositeColorToMove(), pozice.getOccupied()) !=
           NO_FIELDS;
}

bool isInCheckNoCaching(const Position& position) {
    const int king = KingIndex[position.colorToMove];
    return isFieldThreatened(position, position.pieces[king].boardPosition);
}

bool isInCheck(const Position& position) {
    if (position.check == CHECK_UNKNOWN) {
        position.check = isInCheckNoCaching(position) ? IS_CHECK : IS_NOT_CHECK;
    }
    return position.check == IS_CHECK;
}
