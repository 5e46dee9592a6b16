// A move in the 16-bit code of the Polyglot book format. The opening book and the transposition
// table store moves in this code.
#pragma once

#include "board/move.h"

#include <cstdint>
#include <span>

// From bit 0: file and row of the target, file and row of the start, three bits each, then the
// promotion (1 knight, 2 bishop, 3 rook, 4 queen). A castling is the king capturing its own rook.
class PolyglotEntry {
public:
    explicit PolyglotEntry(const Move& move);
    explicit PolyglotEntry(std::int16_t _moveInt) : moveInt(_moveInt) {}

    // The code of a move, never negative.
    static std::int16_t getIntRepresentation(const Move& move);
    // Adds start and target to `result`, a code that has neither.
    static void fillMove(FieldIndex from, FieldIndex to, std::int16_t& result);

    std::int16_t getMoveInt() const { return moveInt; }
    FieldIndex getFrom() const;
    FieldIndex getTo() const;
    // The piece to which a pawn promotes; NO_PIECE if none or invalid.
    PieceType getPromotionPiece() const;

    // Whether the code describes this move.
    bool isMove(const Move& move) const;
    // Index of the first of `moves` that the code describes, or -1.
    int getMove(std::span<const Move> moves) const;

private:
    std::int16_t moveInt;
};
