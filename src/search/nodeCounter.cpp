#include "search/nodeCounter.h"

#include "base/loggingService.h"
#include "search/idaVariant.h"

void NodeCounter::resetSearchedNodes() {
    searchedTreeNodes = 0;
    searchedAllNodes = 0;
    searchedAllNodesAfterTimeControl = 0;
}

bool NodeCounter::timerUp() {
    if (idaVariant == nullptr || !idaVariant->isReady()) {
        return false;
    }
    logger.info("Ida variant ready from treeGenartor");
    return true;
}

bool NodeCounter::poll() {
    const bool isTimeUp = timerUp();
    searchedAllNodesAfterTimeControl = isTimeUp ? TIME_CHECK_QUIT : 0;
    return isTimeUp;
}
