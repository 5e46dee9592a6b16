// The report of a pass, and the interfaces for receiving reports and for stopping a search.
#pragma once

#include "base/clock.h"
#include "search/variant.h"

#include <cstdint>
#include <optional>

// A progress report at the end of a pass.
struct InfoStruct {
    std::int64_t nodesSearched; // moves counted since the search began; see NodeCounter
    std::int64_t nodesPerSec;   // see nodesPerSecond()
    int depth;                  // of the pass, in plies
    int selDepth;               // the most plies from the root that quiescence can reach
    Variant pv;                 // the line found, with its score
    Milliseconds time;          // milliseconds since the search began
    int number;                 // SearchRequest::number
    int lineNumber = 1;         // see SearchPass
    int hashFull = 0;           // used part of the hash table, in thousandths
};

// Nodes per second, rounded down. An elapsed time of 0 counts as 1 millisecond.
std::int64_t nodesPerSecond(std::int64_t nodes, Milliseconds elapsed);

// The root move that a pass is searching.
struct CurrentMove {
    int number; // SearchRequest::number
    int depth;  // of the pass, in plies
    Move move;
    int moveNumber; // among the legal root moves, in the order of the search; 1 is the first
};

// Receives what a search reports.
class InfoListenerInterface {
public:
    // Called on the search thread at the end of a pass.
    virtual void onInfo(const InfoStruct& info) = 0;
    // Called on the search thread after the first second, when the root move has changed, but no
    // more often than the stop flag is polled.
    virtual void onCurrentMove(const CurrentMove& /*current*/) {}
    // Called before a search if there is no memory for the hash table.
    virtual void onTableMissing() {}

protected:
    ~InfoListenerInterface() = default;
};

// Polled by the thread that waits for a search.
class StopListenerInterface {
public:
    // Whether the search must stop. The call may clear the request.
    virtual bool checkForStop() = 0;
    // For a pondering search: the reading of the clock when its time began to run, if it has.
    virtual std::optional<Milliseconds> getClockStart() { return std::nullopt; }

protected:
    ~StopListenerInterface() = default;
};
