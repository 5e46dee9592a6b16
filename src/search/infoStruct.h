// The report of a pass, and the interfaces of those who receive reports and stop searches.
#pragma once

#include "base/clock.h"
#include "search/variant.h"

#include <cstdint>

// A progress report at the end of a pass.
struct InfoStruct {
    std::int64_t nodesSearched; // moves played since the search began
    std::int64_t nodesPerSec;   // see nodesPerSecond()
    int depth;                  // of the pass
    int selDepth;               // plies from the root that quiescence can reach at most
    Variant pv;                 // the line found, with its score
    Milliseconds time;          // milliseconds since the search began
    int number;                 // of the request that is searched
};

// The rate of a search, rounded down. An elapsed time of 0 counts as 1 millisecond.
std::int64_t nodesPerSecond(std::int64_t nodes, Milliseconds elapsed);

// Receives the reports of a search, on the search thread.
class InfoListenerInterface {
public:
    virtual void onInfo(const InfoStruct& info) = 0;

protected:
    ~InfoListenerInterface() = default;
};

// Polled by the thread that waits for a search.
class StopListenerInterface {
public:
    // Whether a stop was requested since the last call.
    virtual bool checkForStop() = 0;

protected:
    ~StopListenerInterface() = default;
};
