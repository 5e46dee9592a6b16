// A table that is addressed by the position key: the storage of the transposition table, whose
// policy stands in transpositionTable.h. With the other entry it counts repetitions exactly;
// the search tells them by the keys of its path, see repetitionTable.h.
#pragma once

#include <concepts>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <type_traits>
#include <vector>

// How a stored value stands against the window that it was searched with.
enum HashTableEntryState : std::uint8_t {
    FREE = 0,     // the slot holds nothing
    FAILLOW = 1,  // the value was at or below alfa
    FAILHIGH = 2, // the value was at or above beta
    NOFAIL = 3,   // the value lay strictly between: an exact score
};

// When a slot was emptied last; see HashTable::empty(). It belongs to the slot and stays when
// the slot is overwritten as a whole.
struct EmptiedMark {
    EmptiedMark() = default;
    EmptiedMark(const EmptiedMark&) = default;
    EmptiedMark& operator=(const EmptiedMark& /*other*/) { return *this; } // NOLINT(*-assign*)
    ~EmptiedMark() = default;

    std::uint16_t times = 0;
};

// One slot of the transposition table: what the move into a position was worth for
// the side that made it. A fresh slot is all zero bytes.
struct GenericEntry {
    // As the log counts it.
    static constexpr int LOGGED_SIZE = 12;

    std::uint16_t checkHashProduction = 0; // top 16 bits of the position's key
    HashTableEntryState state = FREE;
    std::int8_t maxVariantDepth = 0;     // plies that were still to be searched
    std::int32_t evaluation = 0;         // for the side that has just moved
    std::int16_t moveRepresentation = 0; // best move from here, as a Polyglot code
    EmptiedMark emptied;
};

static_assert(sizeof(GenericEntry) == GenericEntry::LOGGED_SIZE);

// The entries of a table of so many mebibytes, cut to a whole number; 0 where there can be no
// such table. And the mebibytes of so many entries.
int entriesOf(int mebibytes);
int mebibytesOf(int entries);

// One bucket of a table that counts positions: how often each stands in it.
class RepetitionEntry {
public:
    static constexpr int LOGGED_SIZE = 24;
    // What decreaseRepetitions() answers for a key that is not there.
    static constexpr std::uint16_t NOT_COUNTED = 65535;

    RepetitionEntry();

    // The count of `hash`, 0 if it is not there.
    std::uint16_t getNumberOfRepetitions(std::uint64_t hash) const;
    // Adds one to the count and returns it.
    std::uint16_t increaseRepetitions(std::uint64_t hash);
    // Takes one off the count and returns it; a key at 0 is removed. A key that is
    // not there gives NOT_COUNTED, and nothing changes.
    std::uint16_t decreaseRepetitions(std::uint64_t hash);
    // Removes all keys.
    void clear() { repetitionMap.clear(); }

private:
    struct Count {
        std::uint64_t hash;
        std::uint16_t repetitions;
    };
    using Map = std::vector<Count>;

    // A map in order of its keys. A bucket holds hardly more than one key, and the
    // array keeps its room, so counting rarely calls the heap.
    Map repetitionMap;

    Map::iterator find(std::uint64_t hash);
};

// Tell the log what a table asks for and what it gets.
void logWantedTable(int size, int entrySize);
void logAllocatedTable(bool isNull);

// An owned array of entries, addressed by the key modulo its size. Size 0 means
// that there is no table, and then no entry may be asked for.
template <class Entry> class HashTable {
public:
    explicit HashTable(int _size) { allocate(_size); }
    HashTable(const HashTable&) = delete;
    HashTable& operator=(const HashTable&) = delete;
    ~HashTable() { deallocate(); }

    // Takes a new array of fresh entries. A size of 0 or below, and one for which
    // there is no memory, gives the empty table. Requires deallocate() before.
    void allocate(int _size) {
        logWantedTable(_size, Entry::LOGGED_SIZE);
        size = 0;
        table = nullptr;
        if (_size <= 0) {
            return;
        }
        table = allocateEntries(static_cast<std::size_t>(_size));
        if (table != nullptr) {
            size = _size;
        }
        logAllocatedTable(table == nullptr);
    }

    // Gives the array back.
    void deallocate() {
        if (table != nullptr) {
            std::destroy_n(table, size);
            std::free(table);
        }
    }

    // A table of another size, with all entries lost; nothing if the size is the same.
    void resize(int _newSize) {
        if (_newSize != size) {
            deallocate();
            allocate(_newSize);
        }
    }

    bool isEmpty() const { return size == 0; }
    int getSize() const { return size; }

    // Makes every slot FREE; what else it holds stays. This touches no slot: each one
    // remembers when it was emptied last, and if that was too long ago, it is emptied as soon
    // as somebody asks for it. A reference from before this call must not be used after it.
    void empty() requires std::same_as<Entry, GenericEntry> {
        if (++timesEmptied != 0) {
            return;
        }
        for (int i = 0; i < size; ++i) { // the counter has wrapped around
            table[i].state = FREE;
            table[i].emptied.times = 0;
        }
    }

    // The entry at an index below the size.
    Entry& getEntry(std::signed_integral auto index) { return upToDate(table[index]); }
    // The slot of a key, and whether it was written by a position with another check
    // value, which is then counted. The slot's state plays no part.
    Entry& getEntry(std::unsigned_integral auto hash, bool& clash) {
        Entry& entry = slotOf(hash);
        clash = entry.checkHashProduction != getCheckValue(hash);
        numberOfInnerClashes += clash ? 1 : 0;
        return entry;
    }
    // The slot or bucket of a key.
    Entry& getEntry(std::unsigned_integral auto hash) {
        if constexpr (std::same_as<Entry, GenericEntry>) {
            bool clash = false;
            return getEntry(hash, clash);
        } else {
            return slotOf(hash);
        }
    }

    std::int64_t getNumberOfInnerClashes() const { return numberOfInnerClashes; }

    // The part of a key that tells positions of one slot apart: its top 16 bits.
    static std::uint16_t getCheckValue(std::uint64_t hash) {
        return static_cast<std::uint16_t>(hash >> 48);
    }

private:
    Entry& slotOf(std::uint64_t hash) {
        return upToDate(table[hash % static_cast<std::uint64_t>(size)]);
    }

    Entry& upToDate(Entry& entry) {
        if constexpr (std::same_as<Entry, GenericEntry>) {
            if (entry.emptied.times != timesEmptied) {
                entry.state = FREE;
                entry.emptied.times = timesEmptied;
            }
        }
        return entry;
    }

    // Memory of zero bytes comes from the system as it is first touched, so a large
    // table costs nothing before it is used.
    static Entry* allocateEntries(std::size_t count) {
        auto* entries = static_cast<Entry*>(std::calloc(count, sizeof(Entry)));
        if constexpr (!std::is_aggregate_v<Entry>) {
            if (entries != nullptr) {
                std::uninitialized_default_construct_n(entries, count);
            }
        }
        return entries;
    }

    int size = 0;
    Entry* table = nullptr;
    std::uint16_t timesEmptied = 0; // modulo 65536
    std::int64_t numberOfInnerClashes = 0;
};
