// The three primitives that change the pieces of a position: put, remove and move a piece.
//
// Once a position is set up, nothing else changes the mailbox, the list, the sets, the material,
// the sum, and the pieces' part of the key. `incremental` is a separate parameter because
// undoMove() restores the saved copy and passes a scratch object here.
#pragma once

#include "board/hashFunctions.h"
#include "board/position.h"

// Puts a piece on an empty square and into a free list entry.
inline void putPiece(Position& position, IncrementalState& incremental, FieldIndex field,
                     Color color, PieceType type, std::int8_t entry) {
    incremental.material[color] += pieceEvaluationValues[type];
    incremental.sum += pieceSums[color][type][field];
    incremental.hash ^= getPieceHash(type, field, color);
    position.board[field] = {color, type, entry};
    position.pieces[entry] = {type, field};
    position.entries |= entrySetOf(entry);
    position.pawnEntries |= type == PAWN ? entrySetOf(entry) : 0;
    position.ofColor[color] |= setOf(field);
    position.ofType[type] |= setOf(field);
}

// Removes the piece on an occupied square. Returns its list entry, which is free now.
inline std::int8_t removePiece(Position& position, IncrementalState& incremental,
                               FieldIndex field) {
    const auto [color, type, entry] = position.board[field];
    incremental.material[color] -= pieceEvaluationValues[type];
    incremental.sum -= pieceSums[color][type][field];
    incremental.hash ^= getPieceHash(type, field, color);
    position.board[field].color = EMPTY;
    position.pieces[entry].pieceType = NO_PIECE;
    position.entries &= ~entrySetOf(entry);
    position.pawnEntries &= ~entrySetOf(entry);
    position.ofColor[color] ^= setOf(field);
    position.ofType[type] ^= setOf(field);
    return entry;
}

// Moves the piece on `from` to the empty square `to`. It keeps its list entry.
inline void movePiece(Position& position, IncrementalState& incremental, FieldIndex from,
                      FieldIndex to) {
    const Field moved = position.board[from];
    const auto [color, type, entry] = moved;
    incremental.sum += pieceSums[color][type][to];
    incremental.sum -= pieceSums[color][type][from];
    incremental.hash ^= getPieceHash(type, from, color) ^ getPieceHash(type, to, color);
    position.board[from].color = EMPTY;
    position.board[to] = moved;
    position.pieces[entry].boardPosition = to;
    position.ofColor[color] ^= setOf(from) | setOf(to);
    position.ofType[type] ^= setOf(from) | setOf(to);
}
