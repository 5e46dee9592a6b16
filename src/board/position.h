// A position: plain data, copied by value.
//
// The pieces are stored three times: the mailbox of 120 squares gives the piece on a square, the
// list of 32 pieces determines the order of moves, and the sets answer questions about many squares
// at once.
#pragma once

#include "board/evaluationTerms.h"
#include "board/fieldSet.h"
#include "board/move.h"

#include <cstdint>

// One square of the mailbox. When a piece leaves, only `color` is written: the other members of
// an empty square are stale, so test `color` first.
struct Field {
    Color color; // of the piece; EMPTY or BORDER if there is none
    PieceType pieceType;
    std::int8_t pieceIndexInList; // its entry in Position::pieces
};

static_assert(sizeof(Field) == 3, "a field fits in three bytes");

// One entry of the piece list. An entry is never reused for another piece: a captured piece
// leaves it free, a promoted pawn keeps it and changes type.
struct Piece {
    PieceType pieceType;      // NO_PIECE marks a free entry
    FieldIndex boardPosition; // stale in a free entry
};

// The cached answer of isInCheck().
enum CheckState : std::int8_t { CHECK_UNKNOWN = 0, IS_CHECK = 1, IS_NOT_CHECK = 2 };

// What a move changes besides the pieces. doMove() saves the whole record, undoMove() restores
// it.
struct IncrementalState {
    // Part of the position itself.
    FieldIndex epField;    // the pawn that has just made a double step, or NO_FIELD
    ByRight<bool> castles; // castling rights, by rightOf()
    int halfMoveClock;     // half moves since the last pawn move or capture
    int moveEvaluation;    // +10 for each White castling, -10 for each Black one; in no score

    // Derived; the comment names the function that computes the value from scratch.
    ByColor<int> material; // in thousandths of a pawn: materialForColor()
    std::uint64_t hash;    // the Polyglot key: getPositionZobristHash()
    PieceSum sum;          // of all pieces: sumOfPieces()
};

// Built by initializeToStartPosition(), setFenNotation() or readPlayableFen(). Only doMove(),
// playMove() and undoMove() change it, through the primitives of pieces.h.
struct Position {
    // The position itself, together with the first members of `incremental`.
    ByEntry<Piece> pieces; // entries 0 to 15 White's, 16 to 31 Black's
    Color colorToMove;     // the side to move
    ByField<Field> board;  // the mailbox
    IncrementalState incremental;

    // Derived: the list entries that hold a piece, and those that hold a pawn: entriesWhere().
    EntrySet entries;
    EntrySet pawnEntries;

    // Derived: the squares of the pieces of each colour and of each type: fieldsWhere().
    ByColor<FieldSet> ofColor;
    ByType<FieldSet> ofType;

    // Derived: the cache of isInCheck(), which fills it in const positions too. From scratch:
    // isAttackedPlainly().
    mutable CheckState check;

    Color oppositeColorToMove() const { return opposite(colorToMove); }
    FieldSet getOccupied() const { return ofColor[WHITE] | ofColor[BLACK]; }
    FieldSet getPieces(Color color, PieceType type) const { return ofColor[color] & ofType[type]; }
    // The square to which an en passant capture moves. Requires a pawn on `epField`.
    FieldIndex getEnPassantTarget() const {
        return incremental.epField + pawnOnePieceAheadOffset[colorToMove];
    }
};
