// The numbering of the squares (fields): a mailbox of 120, in rows of ten.
//
// The square of file f (0 for a) and row r (0 for rank 1) is 21 + f + 10 * r; all other indices
// are border. Every ray and jump ends on the border, so no code tests an index against the
// limits of the mailbox.
#pragma once

#include "board/piece.h"

#include <cstdint>

// A square of the mailbox, 0 to 119.
// clang-format off
enum FieldIndex : std::int8_t {
    NO_FIELD = 0, // none; lies on the border
    A1 = 21, B1, C1, D1, E1, F1, G1, H1,
    A2 = 31, B2, C2, D2, E2, F2, G2, H2,
    A3 = 41, B3, C3, D3, E3, F3, G3, H3,
    A4 = 51, B4, C4, D4, E4, F4, G4, H4,
    A5 = 61, B5, C5, D5, E5, F5, G5, H5,
    A6 = 71, B6, C6, D6, E6, F6, G6, H6,
    A7 = 81, B7, C7, D7, E7, F7, G7, H7,
    A8 = 91, B8, C8, D8, E8, F8, G8, H8,
};
// clang-format on

inline constexpr int EDGE = 8;         // number of files, and of rows, of the board
inline constexpr int BOARD_SIZE = 120; // squares of the mailbox, border included
inline constexpr FieldIndex FIRST_FIELD = A1;
inline constexpr FieldIndex LAST_FIELD = H8;
inline constexpr int ROW_STEP = 10; // from a square to the one a rank up

// A table by square. It has 128 slots, a power of two, so that nested tables are indexed by shifts.
template <class Element> using ByField = Indexed<FieldIndex, Element, BOARD_SIZE, 128>;

constexpr FieldIndex operator+(FieldIndex field, int offset) {
    return static_cast<FieldIndex>(static_cast<int>(field) + offset);
}
constexpr FieldIndex operator-(FieldIndex field, int offset) {
    return field + -offset;
}
constexpr int operator-(FieldIndex a, FieldIndex b) {
    return static_cast<int>(a) - static_cast<int>(b);
}
constexpr FieldIndex& operator+=(FieldIndex& field, int offset) {
    return field = field + offset;
}

// File and row, 0 to 7, of a square of the board.
constexpr int fileOf(FieldIndex field) {
    return (field - 1) % ROW_STEP;
}
constexpr int rowOf(FieldIndex field) {
    return (field - 20) / ROW_STEP;
}
// The square of a file and a row, both 0 to 7.
constexpr FieldIndex fieldOf(int file07, int row07) {
    return FIRST_FIELD + (file07 + ROW_STEP * row07);
}

// Whether `field` lies on the board rather than the border.
constexpr bool isOnBoard(FieldIndex field) {
    const int column = field % ROW_STEP;
    return FIRST_FIELD <= field && field <= LAST_FIELD && column != 0 && column != ROW_STEP - 1;
}

// The squares of the board, rank by rank, a1 to h8.
inline constexpr auto BOARD_FIELDS = [] {
    std::array<FieldIndex, EDGE * EDGE> fields{};
    for (int i = 0; i < EDGE * EDGE; ++i) {
        fields[at(i)] = fieldOf(i % EDGE, i / EDGE);
    }
    return fields;
}();

static_assert(H8 == 98 && fieldOf(0, 0) == A1 && fieldOf(7, 7) == H8);
static_assert(fileOf(E8) == 4 && rowOf(E8) == 7 && !isOnBoard(H1 + 1));

// Whether `field` lies between `first` and `last`, both included.
constexpr bool isWithin(FieldIndex field, FieldIndex first, FieldIndex last) {
    return first <= field && field <= last;
}

// ---- Steps of the pieces: +1 is one file towards h, +10 one rank up ----

// The order of each table is the order of the generated moves.
inline constexpr std::array<int, 8> knightMovesOffsets = {19, 21, 8, 12, -8, -12, -19, -21};
inline constexpr std::array<int, 4> bishopOffset = {9, 11, -9, -11};
inline constexpr std::array<int, 4> vezOffset = {1, 10, -1, -10};                  // rook
inline constexpr std::array<int, 8> kralOffset = {-1, 1, -10, 10, -11, 11, -9, 9}; // king

// The steps of a pawn by colour: one square ahead, two ahead, one back, and the captures
// towards the a-file and the h-file.
inline constexpr ByColor<int> pawnOnePieceAheadOffset = {ROW_STEP, -ROW_STEP};
inline constexpr ByColor<int> barva_OffsetDvePoleDopredu = {2 * ROW_STEP, -2 * ROW_STEP};
inline constexpr ByColor<int> barva_OffsetPoleDozadu = {-ROW_STEP, ROW_STEP};
inline constexpr ByColor<std::array<int, 2>> pawnCaptureOffsets = {
    std::array<int, 2>{ROW_STEP - 1, ROW_STEP + 1},
    std::array<int, 2>{-ROW_STEP - 1, -ROW_STEP + 1}};

// First and last square of the rank that a colour's pawns start on.
inline constexpr ByColor<FieldIndex> pawnStartingRowIndexMin = {A2, A7};
inline constexpr ByColor<FieldIndex> PawnStartingRowIndexMax = {H2, H7};
// First and last square of the rank from which a pawn's next step promotes.
inline constexpr ByColor<FieldIndex> barva_pesciPremenaMin = {A7, A2};
inline constexpr ByColor<FieldIndex> barva_pesciPremenaMax = {H7, H2};
