#include "kestran-play/levels.h"

#include "base/indexed.h"
#include "kestran-explain/searchText.h"

std::string getLevelTable() {
    std::string text = "Level  Nodes for each move  Rating (an estimate)\n";
    for (std::size_t i = 0; i < LEVELS.size(); ++i) {
        const auto& [nodes, rating] = LEVELS[i];
        const std::string count = nodes == SearchLimits::ANY_NODES ? "any" : countText(nodes);
        text += "    " + std::to_string(i + 1) + "  " + std::string(19 - count.size(), ' ') +
                count + "  " + rating + '\n';
    }
    return text;
}

std::string describeLevel(int level) {
    const auto& [nodes, rating] = LEVELS[at(level - 1)];
    return (nodes == SearchLimits::ANY_NODES ? "any number of" : countText(nodes)) +
           " nodes for each move, rating " + rating;
}
