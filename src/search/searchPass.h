// The outcome of one pass of a search.
#pragma once

#include "search/rootWindow.h"
#include "search/searchObserver.h"
#include "search/variant.h"

#include <cstdint>
#include <optional>

struct SearchPass {
    int depth;                                     // plies
    RootWindow window;                             // the window that it ran with
    std::optional<IdaNS::GeneratingResult> result; // nothing if the pass was abandoned
    RootWindow next;                               // the window of the next pass
    std::int64_t nodes;                            // moves counted since the search began
    // The score, for the side to move, and the line. After a failed pass the score is the bound
    // that failed, and the line is meaningless. Valid until the next pass.
    const Variant& line;
    // Set by Ida::deepen():
    int lineNumber = 1;     // among the lines of its depth; 1 is the best
    bool endsDepth = false; // whether it is a good pass and its depth has no further line
    // Whether mates or a book move settle the search, so that no deeper pass follows.
    bool endsSearch = false;

    // Whether the score lies inside the window.
    bool isGood() const { return result == IdaNS::OK || result == IdaNS::OK_FINISH; }
};
