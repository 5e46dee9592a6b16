// The search that is explained: the passes of the engine's depth search, with what each of
// them came to.
#pragma once

#include "board/game.h"
#include "search/engineParameters.h"
#include "search/ida.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

// What one pass came to.
struct PassReport {
    int depth; // plies
    IdaNS::GeneratingResult result;
    // The score for the side to move, and of a good pass the line. Of a pass that failed, the
    // score is only the bound that it failed at, and the line means nothing.
    Variant line;
    std::int64_t nodes; // moves played in this pass
};

// Whether a pass gave more than a bound.
bool isGood(const PassReport& pass);

// A search with empty tables. UsageError if there is no memory for them.
std::unique_ptr<Ida> makeSearch(const EngineConfig& config);

// Searches the position of `game` with a fresh `ida`, without the book, to `depth` plies or
// until `slot` ends it, pass by pass. A pass that was abandoned is left out. `onPass` may be
// empty; it is called after each pass. `rootMoves` are the only moves searched at the root; all if
// empty.
std::vector<PassReport> searchPasses(Ida& ida, const Game& game, int depth, IdaVariant* slot,
                                     const std::function<void(const PassReport&)>& onPass = {},
                                     const std::vector<Move>& rootMoves = {});
