#include "board/pseudoLegalMoves.h"

#include "board/attacks.h"

namespace {

// By colour: where pawns stand after one step from where they start, and before promotion.
constexpr ByColor<FieldSet> firstStepRank = {fieldsFromTo(A3, H3), fieldsFromTo(A6, H6)};
constexpr ByColor<FieldSet> beforePromotion = {
    fieldsFromTo(barva_pesciPremenaMin[WHITE], barva_pesciPremenaMax[WHITE]),
    fieldsFromTo(barva_pesciPremenaMin[BLACK], barva_pesciPremenaMax[BLACK])};

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

// By right: the fields between king and rook, which have to be empty.
constexpr auto castlingPaths = [] {
    ByRight<FieldSet> paths{};
    for (int right = 0; right < CASTLES; ++right) {
        paths[right] = betweenOf(castlingFields[right].kingFrom, castlingFields[right].rookFrom);
    }
    return paths;
}();

// Whether the king can castle with right `right`, which it has, if the path is free: the fields
// that it leaves, crosses and reaches are safe.
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
        count += countOf(reached);
        capturers |= (reached & enemies) != NO_FIELDS ? entrySetOf(entry) : 0;
    }
    addPawns();
    const int right = 2 * color;
    const ByRight<bool>& castles = position.incremental.castles;
    const auto canCastleBy = [&](int i) {
        return castles[i] && (castlingPaths[i] & occupied) == NO_FIELDS &&
               isCastlingSafe(position, i);
    };
    castlesLong = canCastleBy(right);
    castlesShort = canCastleBy(right + 1);
    count += (castlesLong ? 1 : 0) + (castlesShort ? 1 : 0);
}

// Counts the moves of all pawns at once.
void PseudoLegalMoves::addPawns() {
    const Color color = position.colorToMove;
    const FieldSet ownPawns = position.getPieces(color, PAWN);
    const FieldSet occupied = position.getOccupied();
    const FieldSet enemies = position.ofColor[opposite(color)];
    singleSteps = aheadOf(ownPawns, color) & ~occupied;
    doubleSteps = aheadOf(singleSteps & firstStepRank[color], color) & ~occupied;

    // The pawns that may capture to either side, and those that promote with it.
    const FieldSet attacked = aheadOf(enemies, opposite(color));
    const FieldSet left = rightOf(attacked) & ownPawns;
    const FieldSet right = leftOf(attacked) & ownPawns;
    const FieldSet promoting = ownPawns & beforePromotion[color];
    // No field is in two of the first three sets: two hold free fields, the third own pawns.
    count += countOf(singleSteps | doubleSteps | left) + countOf(right);
    if (promoting != NO_FIELDS) {
        const FieldSet promotingSteps = aheadOf(promoting, color) & ~occupied;
        count +=
            3 * (countOf(promotingSteps) + countOf(left & promoting) + countOf(right & promoting));
    }
    FieldSet capturing = left | right;
    if (position.incremental.epField != NO_FIELD) {
        const FieldSet victim = setOf(position.incremental.epField);
        const FieldSet beside = (leftOf(victim) | rightOf(victim)) & ownPawns;
        count += countOf(beside);
        capturing |= beside;
    }
    forEachField(capturing, [this](FieldIndex from) {
        capturers |= entrySetOf(position.board[from].pieceIndexInList);
    });
}

Move makeCastling(const Position& position, bool queenSide) {
    return {NO_FIELD, NO_FIELD, NO_PIECE, NO_PIECE, castlingFlag(position.colorToMove, queenSide),
            NO_PIECE};
}

Move makeEnPassant(const Position& position, FieldIndex from) {
    const FieldIndex to =
        position.incremental.epField + pawnOnePieceAheadOffset[position.colorToMove];
    return {from, to, PAWN, PAWN, EN_PASSANT, NO_PIECE};
}
