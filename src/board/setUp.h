// Building a position: the mailbox first, then the list, then what is derived from them.
#pragma once

#include "board/position.h"

// An empty board with its border, White to move, no rights. Leaves the key alone.
void resetPosition(Position& position);

// Claims an empty field for a piece, in the mailbox alone.
void markField(Position& position, FieldIndex field, Color color, PieceType type);

// Writes the 32 pieces of the initial array into the mailbox, and nothing else.
void setPiecesForStartPosition(Position& position);

// Rebuilds the piece list, and the list index of every occupied field, from the
// mailbox: king, pawns, rooks, knights, bishops, queens, each from a1 to h8. The
// order decides the order of generated moves. A colour's pieces past the 16th find
// no entry and are left out of the list.
void reflectBoardToPieces(Position& position);

// Works out `material` from the piece list.
void countMaterial(Position& position);

// Works out everything that is derived from the pieces, and the key from all the rest.
// The last step of building a position.
void deriveAll(Position& position);

// The start position, complete.
void initializeToStartPosition(Position& position);

// Worth of a colour's pieces in the list, in thousandths of a pawn. Every colour but
// White is taken for Black.
int materialForColor(const Position& position, Color color);

// The fields of the mailbox that hold a piece of a colour, or of a kind.
FieldSet fieldsWhere(const Position& position, Color color);
FieldSet fieldsWhere(const Position& position, PieceType type);

// The entries of the list that hold a piece, or a pawn if only those are wanted.
EntrySet entriesWhere(const Position& position, bool onlyPawns);

// What the pieces of the list add up to.
PieceSum sumOfPieces(const Position& position);

// Worth of all pieces, kings counting 0, in thousandths of a pawn.
inline int totalMaterial(const Position& position) {
    return position.incremental.material[WHITE] + position.incremental.material[BLACK];
}
