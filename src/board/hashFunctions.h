// The 64-bit position key of the Polyglot book format. It addresses the opening
// book, the transposition table and the repetition table. Computed in full when a
// position is built, and kept up to date by doMove() with a few exclusive ors.
#pragma once

#include "board/boardRepresentation.h"

#include <array>
#include <cstdint>

// The random numbers that a key is made of: 768 for a piece on a field, 4 for the
// castling rights, 8 for the file of an en passant capture, 1 for White to move.
extern const std::array<std::uint64_t, 781> ZobristRandomArray;

// The key's own number of a piece: black pieces even, white ones odd.
int getZobristPieceType(PieceType pieceType, Color color);

// The term of a piece on a field.
std::uint64_t getPieceHash(PieceType pieceType, FieldIndex pieceIndex, Color color);
std::uint64_t getPieceHash(const Piece& piece, Color color);

// The term of the castling right `convenientIndex`, 0 to 3 as in Position::castles.
std::uint64_t getCastleHash(int convenientIndex);

// The term of the pawn on `epField`, whether or not it can be taken.
std::uint64_t getUnconditionalEpHash(FieldIndex epField);

// The four parts of a key. The en passant term counts only if a pawn of the side
// to move stands beside the pawn that has just made its double step.
std::uint64_t getPiecesHash(const Position& position);
std::uint64_t getCastlesHash(const Position& position);
std::uint64_t getEpHash(const Position& position);
std::uint64_t getMoveHash(const Position& position);

// The full key of a position, worked out from scratch.
std::uint64_t getPositionZobristHash(const Position& position);

// Brings a key from before `move` to after it. Requires board, list, rights,
// epField and colorToMove as they are after the move, and the context that
// doMove() filled, which was cleared before.
void updateHashMoveDone(const Position& position, const Move& move,
                        const DoMoveContext& moveContext, std::uint64_t& hash);
// The same on the position's own key.
void updateHashMoveDone(Position& position, const Move& move, const DoMoveContext& moveContext);
