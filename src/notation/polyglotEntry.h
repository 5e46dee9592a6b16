// A move in the 16-bit code of the Polyglot book format. The book holds its moves in this
// form, and so does the transposition table.
#pragma once

#include "board/move.h"

#include <cstdint>
#include <span>

// The code with the format's weight and learn value. It holds, from bit 0: file and row of
// the target, file and row of the start, three bits each, then the promotion (1 knight, 2
// bishop, 3 rook, 4 queen). Castling is written as the king taking its own rook.
class PolyglotEntry {
public:
    PolyglotEntry(const Move& move, int _weight, int _learn);
    PolyglotEntry(std::int16_t _moveInt, int _weight, int _learn);

    // The code of a move.
    static std::int16_t getIntRepresentation(const Move& move);
    // Adds start and target, two fields of the board, to a code that holds neither.
    static void fillMove(FieldIndex from, FieldIndex to, std::int16_t& result);

    std::int16_t getMoveInt() const { return moveInt; }
    int getWeight() const { return weight; }
    int getLearn() const { return learn; }
    FieldIndex getFrom() const;
    FieldIndex getTo() const;
    // The piece that a pawn becomes, 0 for none and for codes without a meaning.
    PieceType getPromotionPiece() const;

    // Whether the code names this move.
    bool isMove(const Move& move) const;
    // Index of the first of `moves` that the code names, or -1.
    int getMove(std::span<const Move> moves) const;

private:
    std::int16_t moveInt; // the code; its sign bit stays 0
    int weight;           // always 0 here
    std::int32_t learn;   // always 0 here
};
