// The positional value of a piece by its square, in thousandths of a pawn.
// Rooks and queens have none.
#pragma once

#include "board/field.h"

#include <cstdint>

// One value per square for White, rank 1 first, file a to h.
using WhiteHalf = std::array<std::int16_t, EDGE * EDGE>;
// By square of the mailbox; the border holds 0 and is never read.
using FieldTable = ByField<std::int16_t>;
// By colour and square. Black's values are White's, mirrored by rank and negated, so that a sum
// over both colours is good for White if positive.
using ColorTable = ByColor<FieldTable>;

constexpr FieldTable onMailbox(const WhiteHalf& half) {
    FieldTable table{};
    for (std::size_t i = 0; i < half.size(); ++i) {
        table[BOARD_FIELDS[i]] = half[i];
    }
    return table;
}

constexpr ColorTable forBothColors(const WhiteHalf& half) {
    ColorTable table{};
    table[WHITE] = onMailbox(half);
    for (const FieldIndex field : BOARD_FIELDS) {
        const FieldIndex mirrored = fieldOf(fileOf(field), EDGE - 1 - rowOf(field));
        table[BLACK][mirrored] = static_cast<std::int16_t>(-table[WHITE][field]);
    }
    return table;
}

// clang-format off
// Pawns, in every phase of the game.
inline constexpr ColorTable pawnsOpeningMiddleGame = forBothColors({
      0,   0,   0,   0,   0,   0,   0,   0,
      4,   4, -10, -10, -10,   4,   4,   4,
      7,   5,   9,   9,   9,   5,   5,   7,
     11,  14,  17,  22,  22,  10,   8,   9,
     14,  17,  19,  27,  27,  24,  10,  13,
     17,  20,  22,  32,  32,  27,  13,  20,
     20,  23,  25,  38,  38,  33,  16,  23,
      0,   0,   0,   0,   0,   0,   0,   0,
});

// Knights.
inline constexpr ColorTable knightsPositionTable = forBothColors({
      0,   4,   8,  10,  10,   8,   4,   0,
      4,   8,  14,  16,  16,  14,   8,   4,
      8,  16,  24,  28,  28,  24,  16,   8,
     10,  20,  28,  32,  32,  30,  20,  10,
     10,  20,  31,  38,  38,  34,  24,  14,
     10,  20,  32,  36,  36,  34,  24,  14,
     10,  20,  28,  32,  32,  30,  20,  10,
      8,  16,  24,  28,  28,  26,  16,   8,
});

// Bishops.
inline constexpr ColorTable bishopPosition = forBothColors({
     14,  10,  10,  10,  10,  10,  10,  14,
     14,  24,  18,  18,  22,  18,  23,  14,
     18,  18,  18,  22,  22,  22,  14,  18,
     14,  18,  24,  24,  24,  24,  18,  18,
     14,  18,  20,  30,  30,  26,  24,  14,
     18,  14,  26,  22,  26,  28,  20,  24,
     12,  28,  20,  22,  22,  22,  28,  12,
     14,  10,  10,  10,  10,  10,  10,  14,
});

// Kings until the end game. The table is symmetric by rank, so Black subtracts the value of the same
// square.
inline constexpr FieldTable kingOpening = onMailbox({
     -6,  -2,  -5, -10, -10,  -6,   0,  -4,
     -7, -12, -10, -14, -14, -10, -12,  -5,
    -14, -18, -22, -22, -22, -22, -18, -14,
    -18, -22, -26, -26, -26, -26, -22, -18,
    -18, -22, -26, -26, -26, -26, -22, -18,
    -14, -18, -22, -22, -22, -22, -18, -14,
     -7, -12, -10, -14, -14, -10, -12,  -5,
     -6,  -2,  -5, -10, -10,  -6,   0,  -4,
});

// Kings in the end game.
inline constexpr ColorTable kingEndGame = forBothColors({
      0,   4,   8,  12,  12,   8,   4,   0,
      4,   8,  12,  16,  16,  12,   8,   4,
      8,  12,  16,  20,  20,  16,  12,   8,
     12,  16,  20,  24,  24,  20,  16,  12,
     12,  16,  20,  24,  24,  20,  16,  12,
     11,  15,  19,  23,  23,  19,  15,  11,
     10,  14,  18,  22,  22,  18,  14,  10,
      9,  13,  17,  21,  21,  17,  13,   9,
});
// clang-format on
