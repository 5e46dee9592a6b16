// Sets of fields of the board, a bit for each, from a1 in bit 0 to h8 in bit 63.
#pragma once

#include "board/field.h"

#include <bit>
#include <cstdint>

using FieldSet = std::uint64_t;

inline constexpr FieldSet NO_FIELDS = 0;
inline constexpr FieldSet ALL_FIELDS = ~FieldSet{0};

// The place of a field of the board in a set, 0 to 63. Looked up: to work it out takes divisions.
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

// The set of one field; of none for the border.
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

constexpr bool contains(FieldSet set, FieldIndex field) {
    return (set & setOf(field)) != 0;
}

// Where the processor is not known to have the instruction, GCC calls a function of its library.
// To add up neighbouring bits, then pairs, then bytes is faster in place.
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

// The first field of a set that is not empty, in the order of the bits.
constexpr FieldIndex firstOf(FieldSet set) {
    return BOARD_FIELDS[static_cast<std::size_t>(std::countr_zero(set))];
}

// Calls `visit` for each field of a set, in the order of the bits.
template <class Visit> constexpr void forEachField(FieldSet set, Visit visit) {
    for (; set != 0; set &= set - 1) {
        visit(firstOf(set));
    }
}

// All fields from `first` to `last`, in the order of the bits.
constexpr FieldSet fieldsFromTo(FieldIndex first, FieldIndex last) {
    return (setOf(last) - setOf(first)) | setOf(last);
}

// ---- Sets as a whole, moved by one field ----

inline constexpr FieldSet A_FILE = 0x0101010101010101;
inline constexpr FieldSet H_FILE = A_FILE << (EDGE - 1);

// The fields one rank ahead of those of a set, for a colour.
constexpr FieldSet aheadOf(FieldSet fields, Color color) {
    return color == WHITE ? fields << EDGE : fields >> EDGE;
}
// The fields next to those of a set, on the side of the a- or of the h-file.
constexpr FieldSet leftOf(FieldSet fields) {
    return (fields & ~A_FILE) >> 1;
}
constexpr FieldSet rightOf(FieldSet fields) {
    return (fields & ~H_FILE) << 1;
}
