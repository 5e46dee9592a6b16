// The search object: what the passes of a search share, the opening book, and one pass of a
// given depth.
#pragma once

#include "base/platform.h"
#include "opening/polyglot.h"
#include "search/engineParameters.h"
#include "search/generatorInterface.h"
#include "search/searchState.h"
#include "search/treeSearch.h"
#include "search/variant.h"

#include <memory>
#include <vector>

class TreeGenerator final : public GeneratorInterface {
public:
    // `_config` is shared and must outlive the object.
    explicit TreeGenerator(const EngineConfig& _config);

    // From now on `observer` is told of every move. It must outlive the searches.
    void watchBy(SearchObserver& observer);

    // ---- One pass ----

    // Searches as deep as setActualMoveDepth() has said, with the window firstAlpha,
    // firstBeta. The line in `variant` is replaced if the score lies inside the window,
    // emptied if it is at or above firstBeta, and otherwise stays; `evaluation` is always
    // set. Unless `skipOpening`, a book move is the whole answer. If the pass is abandoned,
    // isAbandoned() is true.
    void generateTree(Position& position, Variant& variant, bool skipOpening);
    void generateTree(Position& position, Variant& variant) override;

    // Appends moves from the table to a line that starts at `position`, up to
    // `maxTotalLength` moves in all. The score stays.
    void completeVariant(const Position& position, Variant& variant, int maxTotalLength);

    // The quiescence search on its own, with a cleared table.
    void quiscenceSearch(Position& position, int alfa, int beta, Variant& variant);

    // ---- The pass to come, as the driver sets it ----

    // Depth in plies. One beyond MAX_PASSES works as that, one below 1 as 1.
    void setActualMoveDepth(int depth);
    void setDefaultFirstAlfaBeta(); // the full window

    int firstAlpha; // the window at the root
    int firstBeta;
    // The line of the last good pass without its quiescence moves, in stored order.
    // No rule of the search reads it.
    std::vector<VariantMove> mainLineToCheck;

    // ---- What the passes share ----

    void resetSearchedNodes() { state.nodes.resetSearchedNodes(); }
    void clearTable() { state.table.clearTable(); }
    void clearKillersTable() { state.order.clearKillersTable(); }
    // The slot whose ready flag stops the search, null for none. Not owned.
    void setIdaVariant(IdaVariant* idaVariant) { state.nodes.setIdaVariant(idaVariant); }
    // The moves that the root may choose from, all if empty, and the moves after which the search
    // ends. resetSearchedNodes() lifts the second.
    void setRootMoves(const std::vector<Move>& moves) { state.rootMoves = moves; }
    void setNodeLimit(std::int64_t limit) { state.nodes.setNodeLimit(limit); }
    // Notes the budget in milliseconds and the time. No rule of the search reads them.
    void setTimer(Milliseconds milliseconds);
    // Whether the last pass was abandoned. True until resetSearchedNodes().
    bool isAbandoned() const { return state.nodes.isAbandoned(); }
    // Brings the table to a size in entries; returns the size that there is now, which is 0
    // if there is no memory.
    int applyChanges(int hashTableSize) { return state.table.resize(hashTableSize); }

    SearchState& getState() { return state; }

private:
    SearchState state;
    std::unique_ptr<NodeSearch> search;
    PolyglotBook book;
    Milliseconds timerMilliseconds = -1; // the budget given to setTimer()
    Milliseconds startClock = 0;         // the clock at setTimer()
};
