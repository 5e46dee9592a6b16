// The report of a search, and the two seams through which the search side reaches
// whoever listens, without knowing them.
#pragma once

#include "base/platform.h"
#include "search/variant.h"

#include <cstdint>

// One progress report, made at the end of a pass.
struct InfoStruct {
    std::int64_t nodesSearched; // since the search began
    std::int64_t nodesPerSec;   // see nodesPerSecond()
    int depth;                  // of the pass
    int selDepth;               // the most plies that quiescence can reach: a bound
    Variant pv;                 // the line found, with its score
    Milliseconds time;          // since the search began
    int number;                 // of the request that is searched
};

// The rate of a search, cut to a whole number. An elapsed time of 0 counts as 1
// millisecond.
std::int64_t nodesPerSecond(std::int64_t nodes, Milliseconds elapsed);

// Receives the reports of a search, on the search thread.
class InfoListenerInterface {
public:
    virtual void onInfo(const InfoStruct& info) = 0;

protected:
    ~InfoListenerInterface() = default;
};

// Is asked from time to time whether the search is to stop.
class StopListenerInterface {
public:
    // Whether a stop was requested since the last call, which uses the request up.
    virtual bool checkForStop() = 0;

protected:
    ~StopListenerInterface() = default;
};
