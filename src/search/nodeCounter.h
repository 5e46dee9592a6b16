// How many moves a search has played, and the poll of the stop flag that goes with it.
#pragma once

#include "search/searchParameters.h"

#include <algorithm>
#include <cstdint>
#include <limits>

class IdaVariant;

class NodeCounter {
public:
    // Back to 0, without a limit.
    void resetSearchedNodes();
    // From now on the search is to end when it has counted so many moves, 1 or more.
    void setNodeLimit(std::int64_t limit);
    // The slot whose ready flag stops the search, null for none. Not owned.
    void setIdaVariant(IdaVariant* _idaVariant) { idaVariant = _idaVariant; }

    // Count a move of the tree or of quiescence, and poll the stop flag when it is due.
    // True: the pass is to be abandoned, and isAbandoned() says so to every frame above.
    bool countTreeMoveAndPoll() {
        ++searchedTreeNodes;
        return countMoveAndPoll();
    }
    bool countMoveAndPoll() {
        ++searchedAllNodes;
        ++searchedAllNodesAfterTimeControl;
        return searchedAllNodesAfterTimeControl > TIME_CHECK_AFTER_NODES && poll();
    }

    // Whether so many moves can be counted without a poll between them; and counts them.
    bool isFarFromPoll(int moves) const {
        return searchedAllNodesAfterTimeControl + moves <= TIME_CHECK_AFTER_NODES;
    }
    void countMoves(int moves) {
        searchedAllNodes += moves;
        searchedAllNodesAfterTimeControl += moves;
    }

    // Whether the search is to end, as the slot tells.
    bool timerUp();
    // Whether the pass was abandoned because of that or of the limit. True until
    // resetSearchedNodes().
    bool isAbandoned() const { return searchedAllNodesAfterTimeControl == TIME_CHECK_QUIT; }

    // Moves played by both searches, which is the count that is reported, and by the tree's.
    std::int64_t getSearchedAllNodes() const { return searchedAllNodes; }
    std::int64_t getSearchedTreeNodes() const { return searchedTreeNodes; }

private:
    bool poll();
    // Begins to count towards the next poll, which comes no later than the limit.
    void countFromPoll() {
        constexpr std::int64_t LONGEST = TIME_CHECK_AFTER_NODES + 1;
        searchedAllNodesAfterTimeControl =
            LONGEST - std::min(LONGEST, nodeLimit - searchedAllNodes);
    }

    std::int64_t nodeLimit = std::numeric_limits<std::int64_t>::max();
    IdaVariant* idaVariant = nullptr;
    std::int64_t searchedTreeNodes = 0;
    std::int64_t searchedAllNodes = 0;
    // The same since the last poll of the stop flag, or TIME_CHECK_QUIT.
    std::int64_t searchedAllNodesAfterTimeControl = 0;
};
