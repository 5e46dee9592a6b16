#include "board/checkFields.h"

CheckFields::CheckFields(const Position& position)
    : enemyKing(position.pieces[KingIndex[position.oppositeColorToMove()]].boardPosition) {
    const Color own = position.colorToMove;
    const FieldSet occupied = position.getOccupied();
    const FieldSet straight = rookAttacks(enemyKing, occupied);
    const FieldSet diagonal = bishopAttacks(enemyKing, occupied);
    fields[NO_PIECE] = NO_FIELDS;
    fields[PAWN] = pawnAttacks[opposite(own)][enemyKing];
    fields[ROOK] = straight;
    fields[KNIGHT] = knightAttacks[enemyKing];
    fields[BISHOP] = diagonal;
    fields[QUEEN] = straight | diagonal;
    fields[KING] = NO_FIELDS;

    const ByType<FieldSet>& ofType = position.ofType;
    const FieldSet sliders = (rookLines[enemyKing] & (ofType[ROOK] | ofType[QUEEN])) |
                             (bishopLines[enemyKing] & (ofType[BISHOP] | ofType[QUEEN]));
    forEachField(sliders & position.ofColor[own], [&](FieldIndex slider) {
        const FieldSet obstacles = betweenOf(enemyKing, slider) & occupied;
        if ((obstacles & (obstacles - 1)) == NO_FIELDS) {
            uncoverers |= obstacles & position.ofColor[own];
        }
    });
}
