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

// What a quiet move adds to the score of its side, at most: the bonuses for advanced rooks depend
// on other pieces as well.
constexpr int gainOf(Color color, PieceType type, FieldIndex from, FieldIndex to, bool isEndGame) {
    constexpr int ROOK_BONUS = std::max(ADVANCED_ROOK_BONUS, SECOND_ADVANCED_ROOK_BONUS);
    constexpr int ROOK_BONUSES = ADVANCED_ROOK_BONUS + SECOND_ADVANCED_ROOK_BONUS;
    const PieceSum before = pieceSums[color][type][from];
    const PieceSum after = pieceSums[color][type][to];
    const bool comesForward = after.getAdvancedRooks(color) > before.getAdvancedRooks(color);
    const bool leavesBack = before.isKingBack(color) && !after.isKingBack(color);
    const int values = isEndGame ? after.getEndGame() - before.getEndGame()
                                 : after.getMiddleGame() - before.getMiddleGame();
    return (color == WHITE ? values : -values) + (comesForward ? ROOK_BONUS : 0) +
           (leavesBack ? ROOK_BONUSES : 0);
}

// The same for the best quiet move that starts from a field, by kind and field.
template <Color color, bool isEndGame>
inline constexpr auto greatestGainsOf = [] {
    ByType<ByField<int>> gains{};
    for (int i = PAWN; i <= KING; ++i) {
        const auto type = static_cast<PieceType>(i);
        for (const FieldIndex from : BOARD_FIELDS) {
            int& gain = gains[type][from];
            gain = -1000; // less than any move loses
            forEachField(quietFieldsOf(color, type, from), [&](FieldIndex to) {
                gain = std::max(gain, gainOf(color, type, from, to, isEndGame));
            });
        }
    }
    return gains;
}();
constexpr const ByType<ByField<int>>& getGreatestGains(Color color, bool isEndGame) {
    if (isEndGame) {
        return color == WHITE ? greatestGainsOf<WHITE, true> : greatestGainsOf<BLACK, true>;
    }
    return color == WHITE ? greatestGainsOf<WHITE, false> : greatestGainsOf<BLACK, false>;
}

// The most that any pawn of either colour can gain by a step.
inline constexpr int GREATEST_PAWN_GAIN = [] {
    int greatest = 0;
    for (const FieldIndex from : BOARD_FIELDS) {
        if (rowOf(from) != 0 && rowOf(from) != EDGE - 1) {
            for (const bool isEndGame : {false, true}) {
                greatest = std::max({greatest, getGreatestGains(WHITE, isEndGame)[PAWN][from],
                                     getGreatestGains(BLACK, isEndGame)[PAWN][from]});
            }
        }
    }
    return greatest;
}();
