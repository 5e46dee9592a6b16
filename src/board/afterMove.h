// Computes the incremental state after a move without playing it.
#pragma once

#include "board/hashFunctions.h"
#include "board/position.h"

// The mover's gain in material, in thousandths of a pawn: the captured piece, and the difference
// between a promoted piece and its pawn.
inline int getMaterialGain(const Move& move) {
    const int promotionGain =
        move.promotionPieceType != NO_PIECE
            ? pieceEvaluationValues[move.promotionPieceType] - pieceEvaluationValues[PAWN]
            : 0;
    return pieceEvaluationValues[move.pieceCaptured] + promotionGain;
}

// The worth of all pieces of both sides after a move.
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

// Whether the position after a move may have occurred before. If the move is a castling, a
// capture or a pawn move, it cannot.
inline bool canRepeatPosition(const Move& move) {
    return !move.isCastle() && !move.resetsClock();
}

// The key that an earlier position has if the move repeats it. Requires canRepeatPosition(), and
// that no double step has just been made. Only of a move that spends a castling right it is not
// the key after the move: it still contains that right. But then no earlier position has the
// key either, since while a side has a right its king and rook have not moved.
inline std::uint64_t getRepeatedKey(const Position& position, const Move& move) {
    const auto& own = pieceHashes[position.colorToMove][move.pieceMoved];
    return position.incremental.hash ^ own[move.from] ^ own[move.to] ^ WHITE_TO_MOVE_HASH;
}
