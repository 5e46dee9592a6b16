// The most that a quiet move of a piece can add to the score of its side.
#pragma once

#include "board/attackSets.h"
#include "board/pieceSums.h"
#include "search/evaluation.h"

#include <algorithm>

// The fields that a quiet move of a piece reaches on an empty board, castling apart.
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

// By colour, kind and the field that the piece leaves: an upper bound for both phases of the
// game, bonuses included.
inline constexpr auto greatestGains = [] {
    // What a rook gains by coming to the last ranks, and a king by leaving enemy rooks there.
    constexpr int ROOK_BONUS = std::max(ADVANCED_ROOK_BONUS, SECOND_ADVANCED_ROOK_BONUS);
    constexpr int KING_BONUS = ADVANCED_ROOK_BONUS + SECOND_ADVANCED_ROOK_BONUS;
    constexpr ByType<int> BONUSES = {0, 0, ROOK_BONUS, 0, 0, 0, KING_BONUS};
    ByColor<ByType<ByField<int>>> gains{};
    for (const Color color : COLORS) {
        const int sign = color == WHITE ? 1 : -1;
        for (int i = PAWN; i <= KING; ++i) {
            const auto type = static_cast<PieceType>(i);
            const auto& sums = pieceSums[color][type];
            for (const FieldIndex from : BOARD_FIELDS) {
                int& gain = gains[color][type][from];
                gain = -1000; // less than any move loses
                forEachField(quietFieldsOf(color, type, from), [&](FieldIndex to) {
                    gain = std::max({gain,
                                     sign * (sums[to].getMiddleGame() - sums[from].getMiddleGame()),
                                     sign * (sums[to].getEndGame() - sums[from].getEndGame())});
                });
                gain += BONUSES[type];
            }
        }
    }
    return gains;
}();

// The most that any pawn of either colour can gain by a step.
inline constexpr int GREATEST_PAWN_GAIN = [] {
    int greatest = 0;
    for (const FieldIndex from : BOARD_FIELDS) {
        if (rowOf(from) != 0 && rowOf(from) != EDGE - 1) {
            greatest = std::max(
                {greatest, greatestGains[WHITE][PAWN][from], greatestGains[BLACK][PAWN][from]});
        }
    }
    return greatest;
}();
