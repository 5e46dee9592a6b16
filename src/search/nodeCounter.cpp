#include "search/nodeCounter.h"

#include "base/loggingService.h"
#include "search/idaVariant.h"

void NodeCounter::resetSearchedNodes() {
    searchedTreeNodes = 0;
    searchedAllNodes = 0;
    setNodeLimit(std::numeric_limits<std::int64_t>::max());
}

void NodeCounter::setNodeLimit(std::int64_t limit) {
    nodeLimit = limit;
    countFromPoll();
}

bool NodeCounter::timerUp() {
    if (idaVariant == nullptr || !idaVariant->isReady()) {
        return false;
    }
    logger.info("Ida variant ready from treeGenartor");
    return true;
}

bool NodeCounter::poll() {
    if (idaVariant != nullptr) {
        idaVariant->setNodes(searchedAllNodes);
    }
    if (onPoll) {
        onPoll();
    }
    const bool isAtEnd = timerUp() || searchedAllNodes >= nodeLimit;
    countFromPoll();
    if (isAtEnd) {
        searchedAllNodesAfterTimeControl = TIME_CHECK_QUIT;
    }
    return isAtEnd;
}
