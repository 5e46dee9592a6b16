// The three primitives that own the pieces of a position: put, remove and move a piece.
//
// Once a position has been set up, nothing else writes the mailbox, the list and what is
// carried along with the pieces.
#pragma once

#include "board/hashFunctions.h"
#include "board/position.h"

// Puts a piece on a field and into a free entry of the list. Requires an empty field.
inline void putPiece(Position& position, FieldIndex field, Color color, PieceType type,
                     std::int8_t entry) {
    position.board[field] = {color, type, entry};
    position.pieces[entry] = {type, field};
    position.ofColor[color] |= setOf(field);
    position.ofType[type] |= setOf(field);
    position.carried.sum += pieceSums[color][type][field];
    position.carried.material[color] += pieceEvaluationValues[type];
    position.carried.hash ^= getPieceHash(type, field, color);
}

// Takes the piece off a field; returns the entry of the list that it leaves free.
inline std::int8_t removePiece(Position& position, FieldIndex field) {
    Field& source = position.board[field];
    position.carried.material[source.color] -= pieceEvaluationValues[source.pieceType];
    position.carried.hash ^= getPieceHash(source.pieceType, field, source.color);
    position.carried.sum -= pieceSums[source.color][source.pieceType][field];
    position.pieces[source.pieceIndexInList].pieceType = NO_PIECE;
    position.ofColor[source.color] ^= setOf(field);
    position.ofType[source.pieceType] ^= setOf(field);
    source.color = EMPTY;
    return source.pieceIndexInList;
}

// Moves the piece on `from` to the empty field `to`; it keeps its entry.
inline void movePiece(Position& position, FieldIndex from, FieldIndex to) {
    Field& source = position.board[from];
    position.carried.hash ^= getPieceHash(source.pieceType, from, source.color) ^
                             getPieceHash(source.pieceType, to, source.color);
    const auto& sums = pieceSums[source.color][source.pieceType];
    position.carried.sum += sums[to];
    position.carried.sum -= sums[from];
    const FieldSet fromTo = setOf(from) | setOf(to);
    position.ofColor[source.color] ^= fromTo;
    position.ofType[source.pieceType] ^= fromTo;
    position.pieces[source.pieceIndexInList].boardPosition = to;
    position.board[to] = source;
    source.color = EMPTY;
}
