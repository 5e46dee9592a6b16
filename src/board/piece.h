// Colours and piece types. Each is a type of its own, as are the tables that they index, so that
// mixing them up does not compile.
#pragma once

#include "base/indexed.h"

#include <cstdint>

// The colour of a side or a piece. A square of the mailbox can also be EMPTY or BORDER.
enum Color : std::int8_t { WHITE = 0, BLACK = 1, EMPTY = 2, BORDER = 3 };

inline constexpr std::array<Color, 2> COLORS = {WHITE, BLACK};
inline constexpr std::array COLOR_NAMES = {"White", "Black"};

// The other side. Requires WHITE or BLACK.
constexpr Color opposite(Color color) {
    return static_cast<Color>(1 - color);
}

enum PieceType : std::int8_t {
    NO_PIECE = 0,
    PAWN = 1,
    ROOK = 2,
    KNIGHT = 3,
    BISHOP = 4,
    QUEEN = 5,
    KING = 6,
};

template <class Element> using ByColor = Indexed<Color, Element, 2>;
template <class Element> using ByType = Indexed<PieceType, Element, 7>;

inline constexpr int PIECES_PER_SIDE = 16; // list entries of a colour
inline constexpr int LIST_ENTRIES = 2 * PIECES_PER_SIDE;

template <class Element> using ByEntry = Indexed<int, Element, LIST_ENTRIES>;

// A set of list entries, one bit each.
using EntrySet = std::uint32_t;
constexpr EntrySet entrySetOf(int entry) {
    return EntrySet{1} << entry;
}
// The entries of each colour.
inline constexpr ByColor<EntrySet> ENTRIES_OF = {0x0000FFFF, 0xFFFF0000};

// First list entry of a colour, and one past its last.
inline constexpr ByColor<int> PiecesStart = {0, 16};
inline constexpr ByColor<int> PiecesEnd = {16, 32};
// List entry of a colour's king.
inline constexpr ByColor<int> KingIndex = {0, 16};
