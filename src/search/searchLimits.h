// The limits of a search. By default nothing but a depth of MAX_PASSES limits it.
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
    // The deepest pass, in plies.
    int depth = MAX_PASSES;
    // The same if only one move is legal, unless the search is infinite. With 0 that move is the
    // answer without a search.
    int onlyMoveDepth = 0;
    // The search ends after playing this many moves, 1 or more.
    std::int64_t nodes = ANY_NODES;
    // Whether to ask the book; a search of unlimited time never does.
    bool useBook = true;
    // The legal moves to choose from; all if empty.
    std::vector<Move> rootMoves = {};
};
