// Builds a position: first the mailbox, then the piece list, then the derived values.
#pragma once

#include "board/position.h"

// Sets up an empty board with its border, White to move, no castling rights. Leaves the key
// unchanged.
void resetPosition(Position& position);

// Puts a piece on a square of the mailbox. Updates nothing else.
void markField(Position& position, FieldIndex field, Color color, PieceType type);

// Puts the 32 pieces of the start position into the mailbox. Updates nothing else.
void setPiecesForStartPosition(Position& position);

// Rebuilds the piece list, and the list index of each occupied square, from the mailbox: king,
// pawns, rooks, knights, bishops, queens, each from a1 to h8. This order determines the order of
// generated moves. A colour's pieces after the 16th are left out.
void reflectBoardToPieces(Position& position);

// Computes `material` from the piece list.
void countMaterial(Position& position);

// Computes the piece list and every derived value except `check`. The last step of building a
// position.
void deriveAll(Position& position);

// Sets up the complete start position.
void initializeToStartPosition(Position& position);

// The value of a colour's pieces in the list, in thousandths of a pawn. Any colour but WHITE counts
// as BLACK.
int materialForColor(const Position& position, Color color);

// The squares of the mailbox that hold a piece of a colour, or of a type.
FieldSet fieldsWhere(const Position& position, Color color);
FieldSet fieldsWhere(const Position& position, PieceType type);

// The list entries that hold a piece; with `onlyPawns`, those that hold a pawn.
EntrySet entriesWhere(const Position& position, bool onlyPawns);

// IncrementalState::sum of the pieces in the list.
PieceSum sumOfPieces(const Position& position);

// The value of all pieces, in thousandths of a pawn. Kings count 0.
inline int totalMaterial(const Position& position) {
    return position.incremental.material[WHITE] + position.incremental.material[BLACK];
}
