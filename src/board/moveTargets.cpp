#include "board/moveTargets.h"

#include "board/attacks.h"

namespace {

FieldSet pawnTargets(const Position& position, FieldIndex from, FieldSet occupied) {
    const Color color = position.colorToMove;
    FieldSet targets = setOf(from + pawnOnePieceAheadOffset[color]) & ~occupied;
    if (targets != NO_FIELDS &&
        isWithin(from, pawnStartingRowIndexMin[color], PawnStartingRowIndexMax[color])) {
        targets |= setOf(from + barva_OffsetDvePoleDopredu[color]) & ~occupied;
    }
    return targets | (pawnAttacks[color][from] & position.ofColor[opposite(color)]);
}

FieldSet attacksOf(PieceType type, FieldIndex from, FieldSet occupied) {
    switch (type) {
    case ROOK:
        return rookAttacks(from, occupied);
    case KNIGHT:
        return knightAttacks[from];
    case BISHOP:
        return bishopAttacks(from, occupied);
    case QUEEN:
        return queenAttacks(from, occupied);
    default:
        return kingAttacks[from];
    }
}

// Whether the king can castle with right `right`: the fields that it leaves, crosses and
// reaches are safe, all fields up to the rook empty.
bool isCastlingPossible(const Position& position, int right) {
    const FieldIndex kingFrom = castlingFields[right].kingFrom;
    const bool queenSide = right % 2 == 0;
    const int direction = queenSide ? -1 : 1;
    if (!position.carried.castles[right] ||
        position.pieces[KingIndex[position.colorToMove]].boardPosition != kingFrom) {
        return false;
    }
    for (int j = 0; j <= 2; ++j) {
        const FieldIndex field = kingFrom + j * direction;
        const bool blocked = j > 0 && position.board[field].color != EMPTY;
        if (blocked || isFieldThreatened(position, field)) {
            return false;
        }
    }
    return !queenSide || position.board[kingFrom - 3].color == EMPTY;
}

} // namespace

MoveTargets::MoveTargets(const Position& position) : epField(position.carried.epField) {
    const Color color = position.colorToMove;
    const FieldSet occupied = position.getOccupied();
    const FieldSet free = ~position.ofColor[color];
    for (int i = PiecesStart[color]; i < PiecesEnd[color]; ++i) {
        const auto& [type, from] = position.pieces[i];
        if (type == NO_PIECE) {
            continue;
        }
        Piece& piece = pieces[size++];
        piece.type = type;
        piece.from = from;
        if (type == PAWN) {
            piece.targets = pawnTargets(position, from, occupied);
            count += countOf(piece.targets) * (isBeforePromotion(from, color) ? 4 : 1) +
                     (canTakeEnPassant(from) ? 1 : 0);
        } else {
            piece.targets = attacksOf(type, from, occupied) & free;
            count += countOf(piece.targets);
        }
    }
    castlesLong = isCastlingPossible(position, 2 * color);
    castlesShort = isCastlingPossible(position, 2 * color + 1);
    count += (castlesLong ? 1 : 0) + (castlesShort ? 1 : 0);
}

Move makeCastling(const Position& position, bool queenSide) {
    return {NO_FIELD, NO_FIELD, NO_PIECE, NO_PIECE, castlingFlag(position.colorToMove, queenSide),
            NO_PIECE};
}

Move makeEnPassant(const Position& position, FieldIndex from) {
    const FieldIndex to = position.carried.epField + pawnOnePieceAheadOffset[position.colorToMove];
    return {from, to, PAWN, PAWN, EN_PASSANT, NO_PIECE};
}
