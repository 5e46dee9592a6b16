// The 64-bit position key of the Polyglot book format. It addresses the opening book and the
// transposition table and identifies repetitions. Computed in full when a position is built,
// then updated by each move.
#pragma once

#include "board/position.h"
#include "board/zobristNumbers.h"

#include <cstdint>

// The number of a piece in the Polyglot format, 0 to 11: even for Black, odd for White.
constexpr int getZobristPieceType(PieceType pieceType, Color color) {
    // The black piece of each type.
    constexpr ByType<int> BLACK_KINDS = {0, 0, 6, 2, 4, 8, 10};
    return BLACK_KINDS[pieceType] + opposite(color);
}

// The term of each piece on each square; 0 for NO_PIECE and on the border.
inline constexpr auto pieceHashes = [] {
    ByColor<ByType<ByField<std::uint64_t>>> hashes{};
    for (const Color color : COLORS) {
        for (int type = PAWN; type <= KING; ++type) {
            const auto pieceType = static_cast<PieceType>(type);
            const int kind = getZobristPieceType(pieceType, color);
            for (const FieldIndex field : BOARD_FIELDS) {
                hashes[color][pieceType][field] =
                    ZobristRandomArray[at((kind * EDGE + rowOf(field)) * EDGE + fileOf(field))];
            }
        }
    }
    return hashes;
}();

// The term of a piece on a square.
constexpr std::uint64_t getPieceHash(PieceType pieceType, FieldIndex pieceIndex, Color color) {
    return pieceHashes[color][pieceType][pieceIndex];
}
inline std::uint64_t getPieceHash(const Piece& piece, Color color) {
    return getPieceHash(piece.pieceType, piece.boardPosition, color);
}

// The term of the castling right `convenientIndex`, as rightOf() numbers it.
constexpr std::uint64_t getCastleHash(int convenientIndex) {
    constexpr int CASTLE_OFFSET = 768;
    constexpr ByRight<int> PLACES = {1, 0, 3, 2}; // Polyglot has the king side first
    return ZobristRandomArray[at(CASTLE_OFFSET + PLACES[convenientIndex])];
}

// The term of the pawn on `epField`, whether or not it can be taken.
constexpr std::uint64_t getUnconditionalEpHash(FieldIndex epField) {
    constexpr int EN_PASSANT_OFFSET = 772;
    return ZobristRandomArray[at(EN_PASSANT_OFFSET + fileOf(epField))];
}

// The term of White to move.
inline constexpr std::uint64_t WHITE_TO_MOVE_HASH = ZobristRandomArray[780];

// The four parts of a key. The en passant part is 0 unless a pawn of the side to move is beside
// the pawn that has just made a double step.
std::uint64_t getPiecesHash(const Position& position);
std::uint64_t getCastlesHash(const Position& position);
inline std::uint64_t getEpHash(const Position& position) {
    const FieldIndex epField = position.incremental.epField;
    if (epField == NO_FIELD) {
        return 0;
    }
    const auto isOwnPawn = [&position](FieldIndex index) {
        const Field& field = position.board[index];
        return field.color == position.colorToMove && field.pieceType == PAWN;
    };
    return isOwnPawn(epField + 1) || isOwnPawn(epField - 1) ? getUnconditionalEpHash(epField) : 0;
}
inline std::uint64_t getMoveHash(const Position& position) {
    return position.colorToMove == WHITE ? WHITE_TO_MOVE_HASH : 0;
}

// The full key of a position, computed from scratch.
std::uint64_t getPositionZobristHash(const Position& position);
