#include "board/checkersAndPins.h"

#include "board/attacks.h"

CheckersAndPins::CheckersAndPins(const Position& _position)
    : position(_position), king(_position.pieces[KingIndex[_position.colorToMove]].boardPosition) {
    const Color enemy = position.oppositeColorToMove();
    const FieldSet occupied = position.getOccupied();
    const ByType<FieldSet>& ofType = position.ofType;
    const FieldSet enemies = position.ofColor[enemy];
    // The enemy king is left out: kings are never on adjacent squares, as neither may move next
    // to the other.
    checkers = ((pawnAttacks[position.colorToMove][king] & ofType[PAWN]) |
                (knightAttacks[king] & ofType[KNIGHT])) &
               enemies;
    forEachField(slidersTowards(position, king) & enemies, [&](FieldIndex slider) {
        const FieldSet obstacles = betweenOf(king, slider) & occupied;
        if (obstacles == NO_FIELDS) {
            checkers |= setOf(slider);
        } else if (!hasSeveral(obstacles)) {
            pinned |= obstacles & ~enemies;
        }
    });
    if (checkers != NO_FIELDS) {
        checkEnders =
            hasSeveral(checkers) ? NO_FIELDS : checkers | betweenOf(king, firstOf(checkers));
    }
}

FieldSet CheckersAndPins::getSafeFields(FieldSet fields) const {
    if (fields == NO_FIELDS) {
        return NO_FIELDS;
    }
    const Color enemy = position.oppositeColorToMove();
    const ByType<FieldSet>& ofType = position.ofType;
    const FieldSet enemies = position.ofColor[enemy];
    const FieldSet occupied = position.getOccupied() & ~setOf(king);
    const FieldSet aheadOfPawns = aheadOf(ofType[PAWN] & enemies, enemy);
    const FieldIndex enemyKing = position.pieces[KingIndex[enemy]].boardPosition;
    FieldSet attacked = leftOf(aheadOfPawns) | rightOf(aheadOfPawns) | kingAttacks[enemyKing];
    forEachField(ofType[KNIGHT] & enemies,
                 [&](FieldIndex from) { attacked |= knightAttacks[from]; });
    const FieldSet queens = ofType[QUEEN];
    forEachField((ofType[ROOK] | queens) & enemies, [&](FieldIndex from) {
        if ((rookLines[from] & fields) != NO_FIELDS) {
            attacked |= rookAttacks(from, occupied);
        }
    });
    forEachField((ofType[BISHOP] | queens) & enemies, [&](FieldIndex from) {
        if ((bishopLines[from] & fields) != NO_FIELDS) {
            attacked |= bishopAttacks(from, occupied);
        }
    });
    return fields & ~attacked;
}

bool CheckersAndPins::allowsEnPassant(FieldIndex from) const {
    const Color own = position.colorToMove;
    const FieldSet victim = setOf(position.incremental.epField);
    const FieldSet target = setOf(position.getEnPassantTarget());
    const FieldSet occupied = (position.getOccupied() & ~setOf(from) & ~victim) | target;
    return !isAttacked(position, king, position.ofColor[opposite(own)] & ~victim, occupied);
}

bool isLegal(const CheckersAndPins& checkersAndPins, const Move& move) {
    if (move.isCastle()) {
        return true; // fully tested by the generator
    }
    if (move.castle_ep_flag == EN_PASSANT) {
        return checkersAndPins.allowsEnPassant(move.from);
    }
    const FieldSet to = setOf(move.to);
    return (move.pieceMoved == KING
                ? checkersAndPins.getSafeFields(to)
                : checkersAndPins.getAllowedFields(move.from) & to) != NO_FIELDS;
}
