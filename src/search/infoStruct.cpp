#include "search/infoStruct.h"

#include <algorithm>

std::int64_t nodesPerSecond(std::int64_t nodes, Milliseconds elapsed) {
    return nodes * 1000 / std::max<Milliseconds>(elapsed, 1);
}
