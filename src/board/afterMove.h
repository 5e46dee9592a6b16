// Computes the incremental state after a move without playing it.
#pragma once

#include "board/hashFunctions.h"
#include "board/position.h"

// The mover's gain in material, in thousandths of a pawn: the value of the captured piece, plus the
// difference between the promoted piece and the pawn.
inline int getMaterialGain(const Move& move) {
    const int promotionGain =
        move.promotionPieceType != NO_PIECE
            ? pieceEvaluationValues[move.promotionPieceType] - pieceEvaluationValues[PAWN]
            : 0;
    return pieceEvaluationValues[move.pieceCaptured] + promotionGain;
}

// The value of all pieces of both sides after a move, in thousandths of a pawn.
inline int getTotalMaterialAfter(const Position& position, const Move& move) {
    const ByColor<int>& material = position.incremental.material;
    return material[WHITE] + material[BLACK] + getMaterialGain(move) -
           2 * pieceEvaluationValues[move.pieceCaptured];
}

// IncrementalState::sum after a pseudo-legal move.
inline PieceSum getSumAfter(const Position& position, const Move& move) {
    const auto& own = pieceSums[position.colorToMove];
    PieceSum sum = position.incremental.sum;
    if (move.isCastle()) {
        const CastlingFields& fields = move.getCastlingFields();
        sum += own[KING][fields.kingTo];
        sum -= own[KING][fields.kingFrom];
        sum += own[ROOK][fields.rookTo];
        sum -= own[ROOK][fields.rookFrom];
        return sum;
    }
    const PieceType arrived =
        move.promotionPieceType != NO_PIECE ? move.promotionPieceType : move.pieceMoved;
    sum += own[arrived][move.to];
    sum -= own[move.pieceMoved][move.from];
    if (move.pieceCaptured != NO_PIECE) {
        const auto& enemy = pieceSums[position.oppositeColorToMove()];
        sum -= enemy[move.pieceCaptured][move.getCapturedField()];
    }
    return sum;
}

// Whether the position after a move may have occurred before. After a castling, a capture or a pawn
// move it cannot.
inline bool canRepeatPosition(const Move& move) {
    return !move.isCastle() && !move.resetsClock();
}

// The key after a move, for finding an earlier position with the same key. Requires
// canRepeatPosition(), and that the last move was not a double step.
//
// If the move loses a castling right, the result still includes that right. This does no harm: the
// move repeats no position, and no earlier position has such a key, because king and rook are at
// home as long as the right exists.
inline std::uint64_t getRepeatedKey(const Position& position, const Move& move) {
    const auto& own = pieceHashes[position.colorToMove][move.pieceMoved];
    return position.incremental.hash ^ own[move.from] ^ own[move.to] ^ WHITE_TO_MOVE_HASH;
}
