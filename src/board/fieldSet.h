// Sets of squares (bitboards): a1 is bit 0, h8 is bit 63.
#pragma once

#include "board/field.h"

#include <bit>
#include <cstdint>

using FieldSet = std::uint64_t;

inline constexpr FieldSet NO_FIELDS = 0;
inline constexpr FieldSet ALL_FIELDS = ~FieldSet{0};

// Bit number of a square, 0 to 63. A table, because computing it needs divisions.
inline constexpr auto fieldBits = [] {
    ByField<std::int8_t> bits{};
    for (const FieldIndex field : BOARD_FIELDS) {
        bits[field] = static_cast<std::int8_t>(fileOf(field) + EDGE * rowOf(field));
    }
    return bits;
}();
constexpr int bitOf(FieldIndex field) {
    return fieldBits[field];
}

// The set of one square; the empty set for the border.
inline constexpr auto fieldSets = [] {
    ByField<FieldSet> sets{};
    for (const FieldIndex field : BOARD_FIELDS) {
        sets[field] = FieldSet{1} << bitOf(field);
    }
    return sets;
}();
constexpr FieldSet setOf(FieldIndex field) {
    return fieldSets[field];
}

// Whether `field` is in `set`; false for the border.
constexpr bool contains(FieldSet set, FieldIndex field) {
    return (set & setOf(field)) != 0;
}

// The number of squares in a set. On x86-64 without -mpopcnt, std::popcount() calls a library
// function; the bit count written out here is faster.
constexpr int countOf(FieldSet set) {
#if defined(__x86_64__) && !defined(__POPCNT__)
    constexpr FieldSet EACH_BYTE = 0x0101010101010101;
    set -= (set >> 1) & (0x55 * EACH_BYTE);
    set = (set & (0x33 * EACH_BYTE)) + ((set >> 2) & (0x33 * EACH_BYTE));
    set = (set + (set >> 4)) & (0x0F * EACH_BYTE);
    return static_cast<int>((set * EACH_BYTE) >> 56);
#else
    return std::popcount(set);
#endif
}

// Whether the set has two or more squares.
constexpr bool hasSeveral(FieldSet set) {
    return (set & (set - 1)) != NO_FIELDS;
}

// The square of the lowest bit. Requires a set that is not empty.
constexpr FieldIndex firstOf(FieldSet set) {
    return BOARD_FIELDS[static_cast<std::size_t>(std::countr_zero(set))];
}

// Calls `visit` for each square, lowest bit first.
template <class Visit> constexpr void forEachField(FieldSet set, Visit visit) {
    for (; set != 0; set &= set - 1) {
        visit(firstOf(set));
    }
}

// The squares from `first` to `last` in bit order, both included.
constexpr FieldSet fieldsFromTo(FieldIndex first, FieldIndex last) {
    return (setOf(last) - setOf(first)) | setOf(last);
}

// ---- Shifts by one square ----

inline constexpr FieldSet A_FILE = 0x0101010101010101;
inline constexpr FieldSet H_FILE = A_FILE << (EDGE - 1);

// The squares one rank ahead of `fields`, as seen by `color`.
constexpr FieldSet aheadOf(FieldSet fields, Color color) {
    return color == WHITE ? fields << EDGE : fields >> EDGE;
}
// The squares next to `fields` towards the a-file, and towards the h-file.
constexpr FieldSet leftOf(FieldSet fields) {
    return (fields & ~A_FILE) >> 1;
}
constexpr FieldSet rightOf(FieldSet fields) {
    return (fields & ~H_FILE) << 1;
}
