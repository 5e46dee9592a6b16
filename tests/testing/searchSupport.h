// What the tests of the search share.
#pragma once

#include "search/engineParameters.h"
#include "search/infoStruct.h"
#include "search/score.h"
#include "search/searchRequest.h"
#include "search/variant.h"
#include "testing/boardSupport.h"

#include <atomic>
#include <limits>
#include <vector>

// The parameters of play, with a table that is soon allocated.
inline EngineConfig makeConfig(int hashTableSize = 65536) {
    EngineConfig config = *EngineConfig::getProdConfig();
    config.hashTableSize = hashTableSize;
    return config;
}

// A search without time limit that may end by itself, to a depth, without the book.
inline SearchLimits limitsOf(int depth) {
    SearchLimits limits;
    limits.depth = depth;
    limits.useBook = false;
    return limits;
}
inline const SearchLimits NO_BOOK = limitsOf(MAX_PASSES);

inline SearchRequest requestFor(const Game& game, const SearchLimits& limits) {
    return {1, limits, game};
}
// The game that begins with a position.
inline SearchRequest requestFor(const Position& position, const SearchLimits& limits) {
    return {1, limits, {position, {position.incremental.hash}}};
}

// The moves of a line, each with a blank before it.
inline std::string movesTextOf(const Variant& variant) {
    std::string text;
    for (int i = 0; i < variant.varLength; ++i) {
        text += ' ' + LongAlgebraicMove(variant.get(i).move).toString();
    }
    return text;
}

// Keeps the reports of a search, and asks for its end when there are as many as wanted.
class Reports final : public InfoListenerInterface, public StopListenerInterface {
public:
    void onInfo(const InfoStruct& info) override {
        infos.push_back(info);
        lines.push_back(movesTextOf(info.pv));
        ++count;
    }
    bool checkForStop() override { return count >= wanted; }

    std::size_t wanted = std::numeric_limits<std::size_t>::max();
    std::vector<InfoStruct> infos; // both belong to the search thread while it runs
    std::vector<std::string> lines;

private:
    std::atomic<std::size_t> count = 0;
};
