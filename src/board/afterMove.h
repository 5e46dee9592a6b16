// What a move changes in what is carried along, known without making the move.
#pragma once

#include "board/hashFunctions.h"
#include "board/position.h"

// What the mover gains in material: what it takes, and what its pawn becomes.
inline int getMaterialGain(const Move& move) {
    const int promotionGain =
        move.promotionPieceType != NO_PIECE
            ? pieceEvaluationValues[move.promotionPieceType] - pieceEvaluationValues[PAWN]
            : 0;
    return pieceEvaluationValues[move.pieceCaptured] + promotionGain;
}

// The worth of all pieces of both sides behind a move.
inline int getTotalMaterialAfter(const Position& position, const Move& move) {
    const ByColor<int>& material = position.incremental.material;
    return material[WHITE] + material[BLACK] + getMaterialGain(move) -
           2 * pieceEvaluationValues[move.pieceCaptured];
}

// The sum of the pieces behind a pseudo-legal move.
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

// Whether the position behind a move can have stood before: nothing has been taken, no pawn
// has moved, no right to castle is lost.
inline bool isReversible(const Position& position, const Move& move) {
    if (move.isCastle() || move.pieceMoved == PAWN || move.pieceCaptured != NO_PIECE) {
        return false;
    }
    const ByRight<bool>& castles = position.incremental.castles;
    for (const int right : {2 * position.colorToMove, 2 * position.colorToMove + 1}) {
        if (castles[right] &&
            (move.pieceMoved == KING || move.from == castlingFields[right].rookFrom)) {
            return false;
        }
    }
    return true;
}

// The key behind a reversible move.
inline std::uint64_t getKeyAfter(const Position& position, const Move& move) {
    const auto& own = pieceHashes[position.colorToMove][move.pieceMoved];
    return position.incremental.hash ^ own[move.from] ^ own[move.to] ^ getEpHash(position) ^
           WHITE_TO_MOVE_HASH;
}
