#include "engine/infoStruct.h"

#include <algorithm>

InfoStruct::InfoStruct(const Variant& pv, int depth, int selDepth, std::int64_t nodesSearched,
                       Milliseconds time)
    : nodesSearched(nodesSearched),
      nodesPerSec(nodesSearched * 1000 / std::max<Milliseconds>(time, 1)), depth(depth),
      selDepth(selDepth), pv(pv), time(time) {
}
