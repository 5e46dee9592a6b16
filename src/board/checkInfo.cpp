#include "board/checkInfo.h"

#include "board/attacks.h"

CheckInfo::CheckInfo(const Position& _position)
    : position(_position),
      enemyKing(position.pieces[KingIndex[position.oppositeColorToMove()]].boardPosition) {
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

    forEachField(slidersTowards(position, enemyKing) & position.ofColor[own],
                 [&](FieldIndex slider) {
                     const FieldSet obstacles = betweenOf(enemyKing, slider) & occupied;
                     if (!hasSeveral(obstacles)) {
                         discoverers |= obstacles & position.ofColor[own];
                     }
                 });
}

// For castling, en passant and promotion, which vacate two squares or change the piece: tests
// the sliders against the board as it is after the move.
bool CheckInfo::givesCheckOtherwise(const Move& move) const {
    const Color own = position.colorToMove;
    FieldSet occupied = position.getOccupied();
    FieldSet straight = position.getPieces(own, ROOK) | position.getPieces(own, QUEEN);
    FieldSet diagonal = position.getPieces(own, BISHOP) | position.getPieces(own, QUEEN);
    bool isDirect = false;
    if (move.isCastle()) {
        const auto& [kingFrom, kingTo, rookFrom, rookTo] = move.getCastlingFields();
        occupied ^= setOf(kingFrom) | setOf(kingTo) | setOf(rookFrom) | setOf(rookTo);
        straight ^= setOf(rookFrom) | setOf(rookTo);
    } else {
        occupied =
            (occupied & ~setOf(move.from) & ~setOf(move.getCapturedField())) | setOf(move.to);
        const PieceType type = move.promotionPieceType != NO_PIECE ? move.promotionPieceType : PAWN;
        isDirect = (type == PAWN || type == KNIGHT) && contains(fields[type], move.to);
        straight |= type == ROOK || type == QUEEN ? setOf(move.to) : NO_FIELDS;
        diagonal |= type == BISHOP || type == QUEEN ? setOf(move.to) : NO_FIELDS;
    }
    return isDirect || (rookAttacks(enemyKing, occupied) & straight) != NO_FIELDS ||
           (bishopAttacks(enemyKing, occupied) & diagonal) != NO_FIELDS;
}
