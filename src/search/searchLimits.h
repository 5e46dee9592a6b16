// The limits of a search. A timed search needs a value for `time`; a depth search has no time
// limit.
#pragma once

#include "board/move.h"
#include "search/searchParameters.h"
#include "search/timeBudget.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

class PolyglotBook;

struct SearchLimits {
    static constexpr std::int64_t ANY_NODES = std::numeric_limits<std::int64_t>::max();

    TimeBudget time = {};
    // Whether the time begins to run only when StopListenerInterface says so. Until then the search
    // has no time limit and does not end by itself.
    bool isPondering = false;
    // The deepest pass, in plies.
    int depth = MAX_PASSES;
    // The deepest pass of a timed search if only one move is legal, unless the search is infinite.
    // 0 makes that move the answer without a search.
    int onlyMoveDepth = 0;
    // The search ends after counting this many moves, 1 or more; see NodeCounter.
    std::int64_t nodes = ANY_NODES;
    // The plies of quiescence, if fewer than configured.
    int quiscenceDepth = MAX_QUISCENCE_DEPTH;
    // Whether to ask the book. A search of unlimited time never does.
    bool useBook = true;
    // The book to ask; the standard one if null.
    std::shared_ptr<const PolyglotBook> book = {};
    // Whether a timed search completes the line of a mate; see Ida::completeMate().
    bool completesMates = false;
    // How many lines are wanted, 1 or more; see Ida::deepen().
    int lines = 1;
    // The legal moves to choose from; all if empty.
    std::vector<Move> rootMoves = {};
};
