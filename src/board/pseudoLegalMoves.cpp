#include "board/pseudoLegalMoves.h"

#include "board/attacks.h"

namespace {

// By colour: the rank that pawns reach by their first single step, and the rank from which they
// promote.
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

// By right: the squares between king and rook, which must be empty.
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
        count += countOf(reached);
        capturers |= (reached & enemies) != NO_FIELDS ? entrySetOf(entry) : 0;
    }
    addPawns();
    const ByRight<bool>& castles = position.incremental.castles;
    const auto canCastleBy = [&](int right) {
        return castles[right] && (castlingPaths[right] & occupied) == NO_FIELDS &&
               isCastlingSafe(position, right);
    };
    castlesLong = canCastleBy(rightOf(color, true));
    castlesShort = canCastleBy(rightOf(color, false));
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

    // The pawns that capture towards the a-file and the h-file, and those about to promote.
    const FieldSet attacked = aheadOf(enemies, opposite(color));
    const FieldSet left = rightOf(attacked) & ownPawns;
    const FieldSet right = leftOf(attacked) & ownPawns;
    const FieldSet promoting = ownPawns & beforePromotion[color];
    // One count for three sets, because they are disjoint. `left` is a set of own pawns, the
    // steps are empty squares. A double step passes over an empty square, so no pawn is there
    // that could reach the same target by a single step.
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
    return {from, position.getEnPassantTarget(), PAWN, PAWN, EN_PASSANT, NO_PIECE};
}
