// The lines of a search that wants several: which of them the next pass searches, and from which
// root moves.
#pragma once

#include "search/rootWindow.h"
#include "search/searchPass.h"
#include "search/searchRequest.h"
#include "search/searchState.h"
#include "search/variant.h"

#include <cstddef>
#include <vector>

class RootLines {
public:
    // What the passes of one line hand on to the next depth.
    struct Line {
        Variant variant;
        RootWindow window;
    };

    explicit RootLines(const SearchRequest& request);

    bool areSeveral() const { return lines.size() > 1; }
    Line& getCurrent() { return lines[current]; }

    // Lets the root choose from the moves that the lines before this one do not begin with, the
    // move of the last depth first.
    void setUp(SearchState& state, const Position& position, int depth);

    // Fills in what a pass of the current line means for the depth and for the search.
    void judge(SearchPass& pass);
    // Goes on to the line of the next pass.
    void advance(const SearchPass& pass);

private:
    const std::vector<Move> allowed;
    std::vector<Line> lines; // one or more
    std::size_t current = 0;
    bool isSettled = true; // whether the lines of this depth so far are mates or book moves
};
