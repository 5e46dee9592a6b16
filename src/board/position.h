// A position: plain data, copied by value.
//
// It holds the same facts three times: as a mailbox of 120 fields, as a list of 32 pieces,
// and as sets of fields. The mailbox tells what stands on a field, the list decides the order
// of moves, the sets answer questions about many fields at once.
#pragma once

#include "board/evaluationTerms.h"
#include "board/fieldSet.h"
#include "board/move.h"

#include <cstdint>

// One field of the mailbox. Only `color` is written when a piece leaves: the other
// two members of an empty field are left-overs, so look at `color` first.
struct Field {
    Color color;                  // state of the field
    PieceType pieceType;          // the piece that stands here
    std::int8_t pieceIndexInList; // its entry in Position::pieces
};

static_assert(sizeof(Field) == 3, "a field fits in three bytes");

// One entry of the piece list. An entry is never reused for another piece: a
// captured piece leaves it free, a promoted pawn keeps it and changes its type.
struct Piece {
    PieceType pieceType;      // NO_PIECE marks a free entry
    FieldIndex boardPosition; // field it stands on; a left-over in a free entry

    int get07Row() const { return rowOf(boardPosition); }
    int get07File() const { return fileOf(boardPosition); }
};

// What is known of a check of the side to move; see isInCheck().
enum CheckState : std::int8_t { CHECK_UNKNOWN = 0, IS_CHECK = 1, IS_NOT_CHECK = 2 };

// What a move changes beside the pieces. doMove() saves it whole, undoMove() puts it back
// whole.
struct IncrementalState {
    // Of the position itself.
    FieldIndex epField; // the pawn that has just made a double step, or NO_FIELD
    // Rights to castle: 0 White queen side, 1 White king side, 2 Black queen side,
    // 3 Black king side. They go as kings and rooks move or are taken.
    ByRight<bool> castles;
    int halfMoveClock;  // half moves since the last pawn move or capture
    int moveEvaluation; // +10 for each White castling so far, -10 for each Black one

    // Derived, with the plain function that works each out from scratch.
    ByColor<int> material; // sum of pieceEvaluationValues: materialForColor()
    std::uint64_t hash;    // the Polyglot key: getPositionZobristHash()
    PieceSum sum;          // of all pieces: sumOfPieces()
};

// Built by initializeToStartPosition() or setFenNotation(), changed by doMove() and
// undoMove() alone, which leave the pieces to the primitives of pieces.h.
struct Position {
    // The position itself, together with the first members of `incremental`.
    ByEntry<Piece> pieces; // entries 0 to 15 White's, 16 to 31 Black's
    Color colorToMove;     // the side to move
    ByField<Field> board;  // the mailbox
    IncrementalState incremental;

    // Derived: the entries of the list that hold a piece, and those that hold a pawn:
    // entriesWhere().
    EntrySet entries;
    EntrySet pawnEntries;

    // Derived: the fields that the pieces of each colour and of each kind stand on, as the
    // mailbox has them: fieldsWhere().
    ByColor<FieldSet> ofColor;
    ByType<FieldSet> ofType;

    // Derived: whether the side to move is in check, if that has been asked. Answers may be
    // remembered in a position that otherwise stays as it is. See isInCheck(), and
    // isAttackedPlainly() for the plain form.
    mutable CheckState check;

    Color oppositeColorToMove() const { return opposite(colorToMove); }
    FieldSet getOccupied() const { return ofColor[WHITE] | ofColor[BLACK]; }
    FieldSet getPieces(Color color, PieceType type) const { return ofColor[color] & ofType[type]; }

    // File and row, 0 to 7, of a field of the board.
    static constexpr int get07File(FieldIndex index) { return fileOf(index); }
    static constexpr int get07Row(FieldIndex index) { return rowOf(index); }
    // The field of a file and a row, both 0 to 7.
    static constexpr FieldIndex getIndexFrom07Notation(int file07, int row07) {
        return fieldOf(file07, row07);
    }
};
