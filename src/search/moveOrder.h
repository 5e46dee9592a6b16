// The order in which the moves of a node are tried. Moves are sorted into drawers, which are read
// out one after another. A drawer keeps the order of the generator.
#pragma once

#include "board/move.h"
#include "search/searchParameters.h"

#include <cstdint>

// The indices of the moves of a node, in the order in which they are to be tried.
using MoveIndices = Indexed<int, std::uint16_t, MAX_MOVES>;

// The order of the tree search, with the killers: the two quiet moves that caused the most cut-offs
// at each ply.
class MoveOrder {
public:
    static constexpr int KILLER_PLIES = MAX_PASSES;   // rows of `killers`
    static constexpr int KILLERS_PER_PLY = 128 * 128; // by origin and target
    static constexpr int KILLERS_SIZE = KILLER_PLIES * KILLERS_PER_PLY;

    MoveOrder() { clearKillersTable(); }

    // Writes each index from 0 to `length` - 1 once: first the table's move, a Polyglot
    // code or 0 for none, then captures by victim, then the killers of ply `depth`, then
    // all other moves.
    void orderMoves(const MoveArray& moves, MoveIndices& moveOrderIndices, int length, int depth,
                    std::int16_t bestMoveShort) const;

    // Records that a quiet move reached beta at ply `depth`.
    void updateKiller(const Move& move, int depth);
    // Forgets all killers.
    void clearKillersTable();

    // The move's index in `killers`. It does not depend on the piece.
    static int getMoveKillersIndex(const Move& move, int depth);
    // The index in `killers` of a killer, 0 for none. For the first killer of ply `depth`, `index`
    // is `depth`; for the second, `depth` + KILLER_PLIES.
    int getActualKiller(int index) const { return actualKillers[index]; }

private:
    int getDrawer(const Move& move, int depth) const;

    // Cut-offs by ply and quiet move. A row is cleared at the first cut-off of its ply and not
    // before the search, because a search reaches few plies.
    Indexed<int, std::uint32_t, KILLERS_SIZE> killers;
    Indexed<int, int, 2 * KILLER_PLIES> actualKillers; // see getActualKiller()
};

// The order of quiescence: captures, valuable victims by cheap attackers first, then all other
// moves. Writes each index from 0 to `length` - 1 once.
void orderMoves(const MoveArray& moves, MoveIndices& moveOrderIndices, int length);
