#include "search/hashTable.h"

#include <algorithm>

namespace {

// Keys that a bucket has room for from the start.
constexpr std::size_t INITIAL_ROOM = 4;

} // namespace

RepetitionEntry::RepetitionEntry() {
    repetitionMap.reserve(INITIAL_ROOM);
}

std::uint16_t RepetitionEntry::getNumberOfRepetitions(std::uint64_t hash) const {
    const auto place = std::ranges::find(repetitionMap, hash, &Count::hash);
    return place != repetitionMap.end() ? place->repetitions : std::uint16_t{0};
}

std::uint16_t RepetitionEntry::increaseRepetitions(std::uint64_t hash) {
    auto place = find(hash);
    if (place == repetitionMap.end() || place->hash != hash) {
        place = repetitionMap.insert(place, {hash, 0});
    }
    return ++place->repetitions;
}

std::uint16_t RepetitionEntry::decreaseRepetitions(std::uint64_t hash) {
    const auto place = find(hash);
    if (place == repetitionMap.end() || place->hash != hash) {
        return NOT_COUNTED;
    }
    const std::uint16_t left = --place->repetitions;
    if (left == 0) {
        repetitionMap.erase(place);
    }
    return left;
}

// The place of `hash` in the order of keys, whether or not it is there.
RepetitionEntry::Map::iterator RepetitionEntry::find(std::uint64_t hash) {
    return std::ranges::lower_bound(repetitionMap, hash, {}, &Count::hash);
}
