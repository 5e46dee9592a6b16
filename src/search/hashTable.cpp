#include "search/hashTable.h"

#include "base/loggingService.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace {

constexpr int MEBIBYTE_SHIFT = 20;

} // namespace

int entriesOf(int mebibytes) {
    const std::int64_t entries = (std::int64_t{mebibytes} << MEBIBYTE_SHIFT) / ENTRY_SIZE;
    const bool isPossible = 0 <= entries && entries <= std::numeric_limits<int>::max();
    return isPossible ? static_cast<int>(entries) : 0;
}

int mebibytesOf(int entries) {
    return static_cast<int>((std::int64_t{entries} * ENTRY_SIZE) >> MEBIBYTE_SHIFT);
}

void HashTable::allocate(int _size) {
    logger.info("Trying to allocate hash table with size ", _size);
    logger.info("Size of an entry", ENTRY_SIZE);
    logger.info("Whole size", std::int64_t{_size} * ENTRY_SIZE);
    size = 0;
    table = nullptr;
    if (_size <= 0) {
        return;
    }
    // The system provides zeroed pages as they are first touched, so a large table costs nothing
    // before it is used.
    table = static_cast<GenericEntry*>(
        std::calloc(static_cast<std::size_t>(_size), sizeof(GenericEntry)));
    if (table != nullptr) {
        size = _size;
    }
    logger.trace(table == nullptr ? "hash table allocated(?). New returns null: true"
                                  : "hash table allocated(?). New returns null: false");
}

void HashTable::deallocate() {
    std::free(table);
}

void HashTable::resize(int _newSize) {
    if (_newSize != size) {
        deallocate();
        allocate(_newSize);
    }
}

void HashTable::clear() {
    if (++generation != 0) {
        return;
    }
    for (int i = 0; i < size; ++i) { // the generation has wrapped around
        table[i].state = FREE;
        table[i].generation = 0;
    }
}

int HashTable::getUsedPermille() const {
    const int sample = std::min(size, 1000);
    const auto used = std::count_if(table, table + sample, [this](const GenericEntry& entry) {
        return entry.state != FREE && entry.generation == generation;
    });
    return sample == 0 ? 0 : static_cast<int>(used) * 1000 / sample;
}

void HashTable::touchPages() {
    constexpr int FEWEST_ENTRIES_OF_A_PAGE = 64; // a lower bound
    clear();
    for (int i = 0; i < size; i += FEWEST_ENTRIES_OF_A_PAGE) {
        getEntry(i); // writes the new generation
    }
}
