// The squares that a piece attacks, as sets. The tables are computed at compile time from the steps
// of the pieces. findInconsistency() checks the results against isAttackedPlainly().
#pragma once

#include "board/fieldSet.h"

#include <array>

// On Zen 1 and 2, pext is microcode and slower than the code without tables.
#if defined(__BMI2__) && !defined(__znver1__) && !defined(__znver2__)
#define KESTRAN_SLIDER_TABLES
#include <immintrin.h>
#include <vector>
#endif

namespace attackTables {

// By square: the squares that one step of each offset reaches.
template <std::size_t N> constexpr ByField<FieldSet> stepsOf(const std::array<int, N>& offsets) {
    ByField<FieldSet> table{};
    for (const FieldIndex field : BOARD_FIELDS) {
        for (const int offset : offsets) {
            table[field] |= setOf(field + offset);
        }
    }
    return table;
}

// The squares from `field`, which is not included, in one direction to the edge of the board.
constexpr FieldSet rayOf(FieldIndex field, int offset) {
    FieldSet ray = NO_FIELDS;
    for (field += offset; isOnBoard(field); field += offset) {
        ray |= setOf(field);
    }
    return ray;
}

// The two rays of a line through a square, towards lower and towards higher bits.
struct Line {
    FieldSet lower;
    FieldSet upper;
};

constexpr ByField<Line> linesOf(int offset) {
    ByField<Line> table{};
    for (const FieldIndex field : BOARD_FIELDS) {
        table[field] = {rayOf(field, -offset), rayOf(field, offset)};
    }
    return table;
}

inline constexpr ByField<Line> ranks = linesOf(1);
inline constexpr ByField<Line> files = linesOf(10);
inline constexpr ByField<Line> diagonals = linesOf(11);
inline constexpr ByField<Line> antiDiagonals = linesOf(9);

// A set for each pair of squares.
using ByTwoFields = std::array<std::array<FieldSet, EDGE * EDGE>, EDGE * EDGE>;

// For two squares on one line: the squares between them, and the whole line.
struct Connections {
    ByTwoFields between;
    ByTwoFields line;
};

inline constexpr auto connections = [] {
    Connections table{};
    for (const FieldIndex from : BOARD_FIELDS) {
        for (const int offset : kralOffset) {
            FieldSet between = NO_FIELDS;
            const FieldSet line = rayOf(from, offset) | rayOf(from, -offset) | setOf(from);
            for (FieldIndex to = from + offset; isOnBoard(to); to += offset) {
                table.between[at(bitOf(from))][at(bitOf(to))] = between;
                table.line[at(bitOf(from))][at(bitOf(to))] = line;
                between |= setOf(to);
            }
        }
    }
    return table;
}();

// The squares that a slider attacks along one line: up to and including the first occupied square
// of each ray. Subtracting the last obstacle below from twice the first one above leaves exactly
// the bits from one to the other, both included.
constexpr FieldSet attacksOn(const Line& line, FieldSet occupied) {
    const FieldSet lower = line.lower & occupied;
    const FieldSet upper = line.upper & occupied;
    const FieldSet lastBelow = (FieldSet{1} << 63) >> std::countl_zero(lower | 1);
    const FieldSet firstAbove = upper & (~upper + 1);
    return (2 * firstAbove - lastBelow) & (line.lower | line.upper);
}

} // namespace attackTables

// The squares that a knight, a king or a pawn attacks, by its own square.
inline constexpr ByField<FieldSet> knightAttacks = attackTables::stepsOf(knightMovesOffsets);
inline constexpr ByField<FieldSet> kingAttacks = attackTables::stepsOf(kralOffset);
// By colour and square of the pawn.
inline constexpr ByColor<ByField<FieldSet>> pawnAttacks = {
    attackTables::stepsOf(pawnCaptureOffsets[WHITE]),
    attackTables::stepsOf(pawnCaptureOffsets[BLACK]),
};

// The squares that a rook and a bishop attack, given the occupied squares, line by line.
constexpr FieldSet rookAttacksByLine(FieldIndex field, FieldSet occupied) {
    return attackTables::attacksOn(attackTables::ranks[field], occupied) |
           attackTables::attacksOn(attackTables::files[field], occupied);
}
constexpr FieldSet bishopAttacksByLine(FieldIndex field, FieldSet occupied) {
    return attackTables::attacksOn(attackTables::diagonals[field], occupied) |
           attackTables::attacksOn(attackTables::antiDiagonals[field], occupied);
}

// rookAttacks() and bishopAttacks() return the same sets as the functions above, from tables if the
// build has them.

#ifdef KESTRAN_SLIDER_TABLES

// The attacks of one kind of slider. pext gathers the relevant occupied squares into the index of
// the table.
class SliderTable {
public:
    using Attacks = FieldSet (*)(FieldIndex field, FieldSet occupied);

    // Fills the table by calling `attacks` for every square and occupancy.
    explicit SliderTable(Attacks attacks);

    FieldSet getAttacks(FieldIndex field, FieldSet occupied) const {
        return answers[firstAnswers[field] + _pext_u64(occupied, relevantFields[field])];
    }

private:
    // The last square of each ray is not relevant: an obstacle there changes nothing.
    ByField<FieldSet> relevantFields{};
    ByField<std::uint32_t> firstAnswers{}; // index of the first entry of each square in `answers`
    std::vector<FieldSet> answers;
};

// Built before main(). Do not use them in static initialisers.
extern const SliderTable rookTable;
extern const SliderTable bishopTable;

inline FieldSet rookAttacks(FieldIndex field, FieldSet occupied) {
    return rookTable.getAttacks(field, occupied);
}
inline FieldSet bishopAttacks(FieldIndex field, FieldSet occupied) {
    return bishopTable.getAttacks(field, occupied);
}

#else

inline FieldSet rookAttacks(FieldIndex field, FieldSet occupied) {
    return rookAttacksByLine(field, occupied);
}
inline FieldSet bishopAttacks(FieldIndex field, FieldSet occupied) {
    return bishopAttacksByLine(field, occupied);
}

#endif

inline FieldSet queenAttacks(FieldIndex field, FieldSet occupied) {
    return rookAttacks(field, occupied) | bishopAttacks(field, occupied);
}

// The squares that a rook and a bishop attack on an empty board.
inline constexpr auto rookLines = [] {
    ByField<FieldSet> lines{};
    for (const FieldIndex field : BOARD_FIELDS) {
        lines[field] = rookAttacksByLine(field, NO_FIELDS);
    }
    return lines;
}();
inline constexpr auto bishopLines = [] {
    ByField<FieldSet> lines{};
    for (const FieldIndex field : BOARD_FIELDS) {
        lines[field] = bishopAttacksByLine(field, NO_FIELDS);
    }
    return lines;
}();

// The squares strictly between `a` and `b` if both lie on one rank, file or diagonal; otherwise
// none.
constexpr FieldSet betweenOf(FieldIndex a, FieldIndex b) {
    return attackTables::connections.between[at(bitOf(a))][at(bitOf(b))];
}
// The whole rank, file or diagonal through `a` and `b`; none if they do not share one.
constexpr FieldSet lineOf(FieldIndex a, FieldIndex b) {
    return attackTables::connections.line[at(bitOf(a))][at(bitOf(b))];
}

static_assert(countOf(rookAttacksByLine(A1, NO_FIELDS)) == 14);
static_assert(countOf(bishopAttacksByLine(D4, NO_FIELDS)) == 13);
static_assert(rookAttacksByLine(D4, setOf(D6) | setOf(B4)) ==
              (setOf(D5) | setOf(D6) | setOf(D3) | setOf(D2) | setOf(D1) | setOf(C4) | setOf(B4) |
               setOf(E4) | setOf(F4) | setOf(G4) | setOf(H4)));
