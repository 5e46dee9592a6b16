// All that a timed search is asked for. By itself a budget of time, and nothing else.
#pragma once

#include "board/move.h"
#include "search/searchParameters.h"
#include "search/timeBudget.h"

#include <cstdint>
#include <limits>
#include <vector>

struct SearchLimits {
    static constexpr std::int64_t ANY_NODES = std::numeric_limits<std::int64_t>::max();

    TimeBudget time = {};
    // No pass goes deeper.
    int depth = MAX_PASSES;
    // The same where one move alone is legal, unless the search is infinite; 0: it is the answer
    // without a search.
    int onlyMoveDepth = 0;
    // The search ends when it has played so many moves, 1 or more.
    std::int64_t nodes = ANY_NODES;
    // Whether the book is asked; not if the time is unlimited.
    bool useBook = true;
    // The moves to choose from, legal ones; all there are if empty.
    std::vector<Move> rootMoves = {};
};
