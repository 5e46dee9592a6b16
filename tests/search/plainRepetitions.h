// The repetition rule in its plain form: a table of buckets that counts how often each position
// occurs in the game and on the path.
#pragma once

#include <array>
#include <cstdint>
#include <map>

namespace plain {

class RepetitionEntry {
public:
    // Adds one to the count of `hash` and returns it.
    std::uint16_t increaseRepetitions(std::uint64_t hash) { return ++repetitionMap[hash]; }
    // Takes one off the count; a key at 0 is removed. Requires that the key is there.
    void decreaseRepetitions(std::uint64_t hash) {
        const auto place = repetitionMap.find(hash);
        if (--place->second == 0) {
            repetitionMap.erase(place);
        }
    }

private:
    std::map<std::uint64_t, std::uint16_t> repetitionMap;
};

class RepetitionTable {
public:
    RepetitionEntry& getEntry(std::uint64_t hash) { return table[hash % table.size()]; }

private:
    std::array<RepetitionEntry, 1024> table;
};

} // namespace plain
