// The 64-bit position key of the Polyglot book format. It addresses the opening
// book and the transposition table, and tells repetitions. Worked out in full when a
// position is built, and carried along from move to move after that.
#pragma once

#include "board/position.h"
#include "board/zobristNumbers.h"

#include <cstdint>

// The key's own number of a piece: black pieces even, white ones odd.
constexpr int getZobristPieceType(PieceType pieceType, Color color) {
    // By piece type: the number of the black piece; the white one is the next.
    constexpr ByType<int> BLACK_KINDS = {0, 0, 6, 2, 4, 8, 10};
    return BLACK_KINDS[pieceType] + opposite(color);
}

// The term of each piece on each field, as getPieceHash() gives it; 0 on the border.
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

// The term of a piece on a field.
constexpr std::uint64_t getPieceHash(PieceType pieceType, FieldIndex pieceIndex, Color color) {
    return pieceHashes[color][pieceType][pieceIndex];
}
inline std::uint64_t getPieceHash(const Piece& piece, Color color) {
    return getPieceHash(piece.pieceType, piece.boardPosition, color);
}

// The term of the castling right `convenientIndex`, 0 to 3 as in IncrementalState::castles.
constexpr std::uint64_t getCastleHash(int convenientIndex) {
    constexpr int CASTLE_OFFSET = 768;
    constexpr ByRight<int> PLACES = {1, 0, 3, 2}; // here the king side comes first
    return ZobristRandomArray[at(CASTLE_OFFSET + PLACES[convenientIndex])];
}

// The term of the pawn on `epField`, whether or not it can be taken.
constexpr std::uint64_t getUnconditionalEpHash(FieldIndex epField) {
    constexpr int EN_PASSANT_OFFSET = 772;
    return ZobristRandomArray[at(EN_PASSANT_OFFSET + fileOf(epField))];
}

// The term that changes with the side to move: it is in the key if White is.
inline constexpr std::uint64_t WHITE_TO_MOVE_HASH = ZobristRandomArray[780];

// The four parts of a key. The en passant term counts only if a pawn of the side
// to move stands beside the pawn that has just made its double step.
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

// The full key of a position, worked out from scratch.
std::uint64_t getPositionZobristHash(const Position& position);
