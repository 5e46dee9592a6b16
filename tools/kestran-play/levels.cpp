#include "kestran-play/levels.h"

#include "base/indexed.h"
#include "explain/searchText.h"

namespace {

std::string ratingText(const Level* level) {
    return level == nullptr ? "by its time" : "about " + std::to_string(level->rating);
}

} // namespace

const Level* getLevel(int level) {
    return level == LEVEL_COUNT ? nullptr : &LEVELS[at(level - 1)];
}

std::string getLevelTable() {
    std::string text = "Level  Nodes for each move  Rating (an estimate)\n";
    for (int i = 1; i <= LEVEL_COUNT; ++i) {
        const Level* level = getLevel(i);
        const std::string number = std::to_string(i);
        const std::string count = level == nullptr ? "any" : countText(level->nodes);
        text.append(5 - number.size(), ' ').append(number).append(21 - count.size(), ' ');
        text.append(count).append("  ").append(ratingText(level)) += '\n';
    }
    return text;
}

std::string describeLevel(int number) {
    const Level* level = getLevel(number);
    return (level == nullptr ? "any number of" : countText(level->nodes)) +
           " nodes for each move, rating " + ratingText(level);
}
