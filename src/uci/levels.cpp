#include "uci/levels.h"

#include <algorithm>
#include <cstdlib>

const Level& getLevelForRating(int rating) {
    return *std::min_element(LEVELS.begin(), LEVELS.end(),
                             [rating](const Level& a, const Level& b) {
                                 return std::abs(a.rating - rating) < std::abs(b.rating - rating);
                             });
}

void limitTo(const Level& level, SearchLimits& limits) {
    limits.nodes = std::min(limits.nodes, level.nodes);
    limits.quiscenceDepth = std::min(limits.quiscenceDepth, level.quiscenceDepth);
}
