// Upper bounds on what a quiet move adds to the static score of its side, by piece and origin.
#pragma once

#include "board/attackSets.h"
#include "board/evaluationTerms.h"

#include <algorithm>

using QuietBounds = ByType<ByField<int>>;

// The squares that a quiet move of a piece reaches on an empty board, without castling.
constexpr FieldSet quietFieldsOf(Color color, PieceType type, FieldIndex from) {
    switch (type) {
    case PAWN:
        return setOf(from + pawnOnePieceAheadOffset[color]) |
               setOf(from + barva_OffsetDvePoleDopredu[color]);
    case ROOK:
        return rookLines[from];
    case KNIGHT:
        return knightAttacks[from];
    case BISHOP:
        return bishopLines[from];
    case QUEEN:
        return rookLines[from] | bishopLines[from];
    default:
        return kingAttacks[from];
    }
}

// The bounds of a colour in one phase: the maximum of quietGainBound() over all targets.
template <Color color, bool isEndGame>
inline constexpr QuietBounds quietBoundsOf = [] {
    QuietBounds bounds{};
    for (int i = PAWN; i <= KING; ++i) {
        const auto type = static_cast<PieceType>(i);
        for (const FieldIndex from : BOARD_FIELDS) {
            int& bound = bounds[type][from];
            bound = -1000; // below any gain
            forEachField(quietFieldsOf(color, type, from), [&](FieldIndex to) {
                bound = std::max(bound, quietGainBound(color, type, from, to, isEndGame));
            });
        }
    }
    return bounds;
}();
constexpr const QuietBounds& getQuietBounds(Color color, bool isEndGame) {
    if (isEndGame) {
        return color == WHITE ? quietBoundsOf<WHITE, true> : quietBoundsOf<BLACK, true>;
    }
    return color == WHITE ? quietBoundsOf<WHITE, false> : quietBoundsOf<BLACK, false>;
}

// A bound on the gain of any pawn step of either colour in either phase.
inline constexpr int PAWN_STEP_BOUND = [] {
    int greatest = 0;
    for (const FieldIndex from : BOARD_FIELDS) {
        if (rowOf(from) != 0 && rowOf(from) != EDGE - 1) {
            for (const bool isEndGame : {false, true}) {
                greatest = std::max({greatest, getQuietBounds(WHITE, isEndGame)[PAWN][from],
                                     getQuietBounds(BLACK, isEndGame)[PAWN][from]});
            }
        }
    }
    return greatest;
}();
