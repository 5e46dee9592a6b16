// The text of a move in the UCI protocol: e2e4, e1g1, e7e8q.
#pragma once

#include "board/move.h"

#include <span>
#include <string>

// Start, target and promotion of a move. A castling is the king's move.
class LongAlgebraicMove {
public:
    explicit LongAlgebraicMove(const Move& move);
    // Reads text, of which characters past the fifth are ignored. A text that names
    // no fields, or is shorter than four characters, names no move of any position.
    explicit LongAlgebraicMove(const std::string& text);

    std::string toString() const;

    // Index of the first of `moves` that this one names, or -1. Without a promotion it
    // names every move with its start and target.
    int getIndexOfMove(std::span<const Move> moves) const;

    FieldIndex getFrom() const { return from; }
    FieldIndex getTo() const { return to; }
    PieceType getPromotionType() const { return promotionType; }

private:
    FieldIndex from;
    FieldIndex to;
    PieceType promotionType; // 0 for none
};
