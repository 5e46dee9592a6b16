#include "search/hashTable.h"

#include "base/loggingService.h"

#include <algorithm>
#include <limits>

namespace {

constexpr int MEBIBYTE_SHIFT = 20;

// Keys that a bucket has room for from the start.
constexpr std::size_t INITIAL_ROOM = 4;

} // namespace

int entriesOf(int mebibytes) {
    const std::int64_t bytes = std::int64_t{mebibytes} << MEBIBYTE_SHIFT;
    const std::int64_t entries = bytes / GenericEntry::LOGGED_SIZE;
    const bool isPossible = 0 <= entries && entries <= std::numeric_limits<int>::max();
    return isPossible ? static_cast<int>(entries) : 0;
}

int mebibytesOf(int entries) {
    const std::int64_t bytes = std::int64_t{entries} * GenericEntry::LOGGED_SIZE;
    return static_cast<int>(bytes >> MEBIBYTE_SHIFT);
}

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

void logWantedTable(int size, int entrySize) {
    logger.info("Trying to allocate hash table with size ", size);
    logger.info("Size of an entry", entrySize);
    logger.info("Whole size", static_cast<long>(size) * entrySize);
}

void logAllocatedTable(bool isNull) {
    logger.trace(isNull ? "hash table allocated(?). New returns null: true"
                        : "hash table allocated(?). New returns null: false");
}
