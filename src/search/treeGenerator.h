// The search object: one pass of a given depth, with the state that the passes of a search share
// and the opening book.
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

    // Report every move to `observer`, or count in `statistics`, from now on. Either must outlive
    // the searches; the later call replaces the earlier.
    void watchBy(SearchObserver& observer);
    void countIn(TestStatistics& _statistics);

    // One pass, `depth` plies deep; a depth outside 1 to MAX_PASSES works as the nearest inside.
    // The line in `variant` is replaced if the score lies inside the window, emptied if it is at
    // or above `firstBeta`, and otherwise kept; `evaluation` is always set. Unless `skipOpening`,
    // a book move is the whole answer. Check `state.nodes.isAbandoned()` before using any of it.
    void generateTree(Position& position, Variant& variant, int depth, const RootWindow& window,
                      bool skipOpening);

    // Appends moves from the table to a line that starts at `position`, up to
    // `maxTotalLength` moves in all. The score is unchanged.
    void completeVariant(const Position& position, Variant& variant, int maxTotalLength);

    // The quiescence search on its own, with a cleared table.
    void quiscenceSearch(Position& position, int alfa, int beta, Variant& variant);

    SearchState state;

private:
    std::unique_ptr<NodeSearch> search;
    TestStatistics* statistics = nullptr; // not owned
    const PolyglotBook& book;
};
