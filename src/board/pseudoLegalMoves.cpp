#include "board/pseudoLegalMoves.h"

#include "board/attacks.h"

namespace {

// The rank that the pawns of a colour reach with their first single step.
constexpr ByColor<FieldSet> firstStepRank = {fieldsFromTo(A3, H3), fieldsFromTo(A6, H6)};

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

// By castling right: the squares between king and rook, which must be empty.
constexpr auto castlingPaths = [] {
    ByRight<FieldSet> paths{};
    for (int right = 0; right < CASTLES; ++right) {
        paths[right] = betweenOf(castlingFields[right].kingFrom, castlingFields[right].rookFrom);
    }
    return paths;
}();

// Whether the king is at home and the squares that it leaves, crosses and reaches are not
// attacked.
bool isCastlingSafe(const Position& position, int right) {
    const auto& [kingFrom, kingTo, rookFrom, rookTo] = castlingFields[right];
    return position.pieces[KingIndex[position.colorToMove]].boardPosition == kingFrom &&
           !isFieldThreatened(position, kingFrom) && !isFieldThreatened(position, rookTo) &&
           !isFieldThreatened(position, kingTo);
}

} // namespace

PseudoLegalMoves::PseudoLegalMoves(const Position& _position) : position(_position) {
    const Color color = position.colorToMove;
    const FieldSet occupied = position.getOccupied();
    const FieldSet own = position.ofColor[color];
    const FieldSet enemies = occupied ^ own;
    EntrySet pieces = position.entries & ~position.pawnEntries & ENTRIES_OF[color];
    for (; pieces != 0; pieces &= pieces - 1) {
        const int entry = std::countr_zero(pieces);
        const auto& [type, from] = position.pieces[entry];
        const FieldSet reached = attacksOf(type, from, occupied) & ~own;
        targets[entry] = reached;
        capturers |= (reached & enemies) != NO_FIELDS ? entrySetOf(entry) : 0;
    }
    addPawns();
}

// Whether castling is possible. Requires that the side to move has `right`.
bool PseudoLegalMoves::canCastleBy(int right) const {
    return (castlingPaths[right] & position.getOccupied()) == NO_FIELDS &&
           isCastlingSafe(position, right);
}

// Sets the steps of all pawns and adds the pawns that can capture to `capturers`.
void PseudoLegalMoves::addPawns() {
    const Color color = position.colorToMove;
    const FieldSet ownPawns = position.getPieces(color, PAWN);
    const FieldSet occupied = position.getOccupied();
    singleSteps = aheadOf(ownPawns, color) & ~occupied;
    doubleSteps = aheadOf(singleSteps & firstStepRank[color], color) & ~occupied;

    const Color enemy = opposite(color);
    const FieldSet oneRankBack = aheadOf(position.ofColor[enemy], enemy);
    FieldSet capturing = leftOf(oneRankBack) | rightOf(oneRankBack);
    if (position.incremental.epField != NO_FIELD) {
        const FieldSet victim = setOf(position.incremental.epField);
        capturing |= leftOf(victim) | rightOf(victim);
    }
    forEachField(capturing & ownPawns, [this](FieldIndex from) {
        capturers |= entrySetOf(position.board[from].pieceIndexInList);
    });
}

int PseudoLegalMoves::getCount() const {
    const Color color = position.colorToMove;
    int count = (canCastle(true) ? 1 : 0) + (canCastle(false) ? 1 : 0);
    forEachPiece(position.entries & ENTRIES_OF[color], [&](const PieceTargets& piece) {
        count += countOf(piece.targets);
        if (piece.type == PAWN && isBeforePromotion(piece.from, color)) {
            count += 3 * countOf(piece.targets); // one move for each of four pieces
        }
        if (piece.type == PAWN && canTakeEnPassant(piece.from)) {
            ++count;
        }
    });
    return count;
}

Move makeCastling(const Position& position, bool queenSide) {
    return {NO_FIELD, NO_FIELD, NO_PIECE, NO_PIECE, castlingFlag(position.colorToMove, queenSide),
            NO_PIECE};
}

Move makeEnPassant(const Position& position, FieldIndex from) {
    return {from, position.getEnPassantTarget(), PAWN, PAWN, EN_PASSANT, NO_PIECE};
}
