#include "board/kingLines.h"

#include "board/attacks.h"

KingLines::KingLines(const Position& _position)
    : position(_position), king(_position.pieces[KingIndex[_position.colorToMove]].boardPosition) {
    const Color enemy = position.oppositeColorToMove();
    const FieldSet occupied = position.getOccupied();
    const ByType<FieldSet>& ofType = position.ofType;
    const FieldSet enemies = position.ofColor[enemy];
    checkers = ((pawnAttacks[position.colorToMove][king] & ofType[PAWN]) |
                (knightAttacks[king] & ofType[KNIGHT])) &
               enemies;
    forEachField(slidersTowards(position, king) & enemies, [&](FieldIndex slider) {
        const FieldSet obstacles = betweenOf(king, slider) & occupied;
        if (obstacles == NO_FIELDS) {
            checkers |= setOf(slider);
        } else if ((obstacles & (obstacles - 1)) == NO_FIELDS) {
            pinned |= obstacles & ~enemies;
        }
    });
    if (checkers != NO_FIELDS) {
        const bool isDouble = (checkers & (checkers - 1)) != NO_FIELDS;
        answers = isDouble ? NO_FIELDS : checkers | betweenOf(king, firstOf(checkers));
    }
}

bool KingLines::isSafe(FieldIndex to) const {
    return !isAttacked(position, to, position.ofColor[position.oppositeColorToMove()],
                       position.getOccupied() & ~setOf(king));
}

bool KingLines::allowsEnPassant(FieldIndex from) const {
    const Color own = position.colorToMove;
    const FieldSet victim = setOf(position.carried.epField);
    const FieldSet target = setOf(position.carried.epField + pawnOnePieceAheadOffset[own]);
    const FieldSet occupied = (position.getOccupied() & ~setOf(from) & ~victim) | target;
    return !isAttacked(position, king, position.ofColor[opposite(own)] & ~victim, occupied);
}

bool isLegal(const KingLines& lines, const Move& move) {
    if (move.isCastle()) {
        return true; // the generator has made sure of it
    }
    if (move.castle_ep_flag == EN_PASSANT) {
        return lines.allowsEnPassant(move.from);
    }
    return move.pieceMoved == KING ? lines.isSafe(move.to)
                                   : contains(lines.getAllowedFields(move.from), move.to);
}
