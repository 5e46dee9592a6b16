// A move in the notation of the UCI protocol: e2e4, e1g1, e7e8q.
#pragma once

#include "board/move.h"

#include <span>
#include <string>

// Start, target and promotion of a move. A castling is written as the king's move.
class LongAlgebraicMove {
public:
    explicit LongAlgebraicMove(const Move& move);
    // Reads the first five characters. A text that does not start with two squares matches no
    // move of any position.
    explicit LongAlgebraicMove(const std::string& text);

    std::string toString() const;

    // Index of the first of `moves` that matches, or -1. Without a promotion, any move with the
    // same start and target matches.
    int getIndexOfMove(std::span<const Move> moves) const;

    FieldIndex getFrom() const { return from; }
    FieldIndex getTo() const { return to; }
    PieceType getPromotionType() const { return promotionType; }

private:
    FieldIndex from;
    FieldIndex to;
    PieceType promotionType; // NO_PIECE if none
};
