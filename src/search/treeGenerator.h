// Runs passes of a given depth. Owns the state that the passes of a search share.
#pragma once

#include "opening/polyglot.h"
#include "search/engineParameters.h"
#include "search/rootWindow.h"
#include "search/searchState.h"
#include "search/statistics.h"
#include "search/treeSearch.h"
#include "search/variant.h"

#include <memory>

class TreeGenerator final {
public:
    // `_config` is shared and must outlive the object.
    explicit TreeGenerator(const EngineConfig& _config);

    // From this call on, report every move to `observer`, or count in `statistics`. Either must
    // outlive the searches. Each call replaces the one before.
    void watchBy(SearchObserver& observer);
    void countIn(TestStatistics& _statistics);

    // The book to ask; it must outlive the searches. The standard one by default.
    void setBook(const PolyglotBook& _book) { book = &_book; }

    // One pass, `depth` plies deep; a depth outside 1 to MAX_PASSES works as the nearest inside.
    // The line in `variant` is replaced if the score lies inside the window, emptied if it is at
    // or above `firstBeta`, and otherwise kept; `evaluation` is always set. If the book has a move
    // for the position, that move is the line, unless `skipOpening`. Check
    // `state.nodes.isAbandoned()` before using the result.
    void generateTree(Position& position, Variant& variant, int depth, const RootWindow& window,
                      bool skipOpening);

    // Appends moves from the table to a line that starts at `position`, up to
    // `maxTotalLength` moves in all. The score is unchanged.
    void completeVariant(const Position& position, Variant& variant, int maxTotalLength);

    // Clears the table and runs quiescence alone. Stores score and line in `variant`.
    void quiscenceSearch(Position& position, int alfa, int beta, Variant& variant);

    SearchState state;

private:
    std::unique_ptr<NodeSearch> search;
    TestStatistics* statistics = nullptr; // not owned
    const PolyglotBook* book;             // not owned
};
