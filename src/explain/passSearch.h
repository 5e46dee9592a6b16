// The depth search, pass by pass, with what each pass came to.
#pragma once

#include "base/clock.h"
#include "board/game.h"
#include "explain/treeGeneratorDebug.h"
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
    std::int64_t nodes; // moves counted in this pass
    RootWindow window = {};
    std::int64_t allNodes = 0; // moves counted since the search began
    Milliseconds time = 0;     // since the search began
    int hashFull = 0;          // see InfoStruct
};

// Whether a pass gave more than a bound.
bool isGood(const PassReport& pass);
// The last one that did; null if there is none.
const PassReport* findLastGood(const std::vector<PassReport>& passes);

// A search with empty tables. If there is no memory for them, it searches without.
std::unique_ptr<Ida> makeSearch(const EngineConfig& config);

// Called after each pass that was not abandoned.
using PassListener = std::function<void(const PassReport&)>;

// Searches with a fresh `ida` until a limit of the request or `slot` ends it, pass by pass. A pass
// that was abandoned is left out. `slot` and `onPass` may be empty.
std::vector<PassReport> searchPasses(Ida& ida, const SearchRequest& request, IdaVariant* slot,
                                     const PassListener& onPass = {});

// The same while `explain` watches `line`, which is legal and has at most Explain::MAX_LINE moves.
std::vector<PassReport> watchSearch(Ida& ida, const SearchRequest& request,
                                    const std::vector<Move>& line, Explain& explain,
                                    IdaVariant* slot, const PassListener& onPass = {});

// The request for a search of `game` to `depth` plies, without the book. `rootMoves` are the only
// moves searched at the root; all if empty.
SearchRequest depthRequest(const Game& game, int depth, const std::vector<Move>& rootMoves = {});

// The moves of a line in the order of play.
std::vector<Move> movesOf(const Variant& variant);
