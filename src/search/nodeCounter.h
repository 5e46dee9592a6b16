// Counts the moves that a search tries or QuietSkipper skips. Every 20001 of them, publishes the
// count and polls the stop flag.
#pragma once

#include "search/searchParameters.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <limits>
#include <utility>

class IdaVariant;

class NodeCounter {
public:
    // Sets the counts to 0 and removes the limit.
    void resetSearchedNodes();
    // Abandons the search when it has counted `limit` moves since resetSearchedNodes(). Requires 1
    // or more.
    void setNodeLimit(std::int64_t limit);
    // The slot whose ready flag stops the search and that gets the count, null for none. Not owned.
    void setIdaVariant(IdaVariant* _idaVariant) { idaVariant = _idaVariant; }
    // Called at each poll; empty for none.
    void setPollCallback(std::function<void()> callback) { onPoll = std::move(callback); }

    // Count a move of the tree or of quiescence, and poll the stop flag if a poll is due. Return
    // true if the pass is to be abandoned; isAbandoned() is then true as well.
    bool countTreeMoveAndPoll() {
        ++searchedTreeNodes;
        return countMoveAndPoll();
    }
    bool countMoveAndPoll() {
        ++searchedAllNodes;
        ++searchedAllNodesAfterTimeControl;
        return searchedAllNodesAfterTimeControl > TIME_CHECK_AFTER_NODES && poll();
    }

    // Whether `moves` more moves fit before the next poll.
    bool isFarFromPoll(int moves) const {
        return searchedAllNodesAfterTimeControl + moves <= TIME_CHECK_AFTER_NODES;
    }
    // Counts `moves` moves of quiescence without polling. Requires isFarFromPoll(moves).
    void countMoves(int moves) {
        searchedAllNodes += moves;
        searchedAllNodesAfterTimeControl += moves;
    }

    // Whether the ready flag is up. Without a slot it never is.
    bool timerUp();
    // Whether the pass was abandoned, because of the flag or the limit. Stays true until
    // resetSearchedNodes().
    bool isAbandoned() const { return searchedAllNodesAfterTimeControl == TIME_CHECK_QUIT; }

    // All moves, which is the number reported; and those of the tree alone.
    std::int64_t getSearchedAllNodes() const { return searchedAllNodes; }
    std::int64_t getSearchedTreeNodes() const { return searchedTreeNodes; }

private:
    bool poll();
    // Starts counting towards the next poll. If the limit is reached earlier, the count starts
    // higher, so that it passes TIME_CHECK_AFTER_NODES exactly at the limit.
    void countFromPoll() {
        constexpr std::int64_t LONGEST = TIME_CHECK_AFTER_NODES + 1;
        searchedAllNodesAfterTimeControl =
            LONGEST - std::min(LONGEST, nodeLimit - searchedAllNodes);
    }

    std::int64_t nodeLimit = std::numeric_limits<std::int64_t>::max();
    IdaVariant* idaVariant = nullptr;
    std::function<void()> onPoll;
    std::int64_t searchedTreeNodes = 0;
    std::int64_t searchedAllNodes = 0;
    // Moves since the last poll, more if the node limit comes before the next one; or
    // TIME_CHECK_QUIT while the pass is being abandoned.
    std::int64_t searchedAllNodesAfterTimeControl = 0;
};
