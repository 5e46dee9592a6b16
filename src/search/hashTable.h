// The storage of the transposition table: entries addressed by the position key. What is written
// and read is decided in transpositionTable.h.
#pragma once

#include <concepts>
#include <cstdint>

// How a stored value lies relative to the window that it was searched with.
enum HashTableEntryState : std::uint8_t {
    FREE = 0,     // the slot is empty
    FAILLOW = 1,  // the value was at or below alfa
    FAILHIGH = 2, // the value was at or above beta
    NOFAIL = 3,   // the value lay strictly between: an exact score
};

// One slot: what the move into a position was worth for the side that made it. A fresh slot is
// all zero bytes.
struct GenericEntry {
    std::uint16_t checkHashProduction = 0; // top 16 bits of the position's key
    HashTableEntryState state = FREE;
    std::int8_t maxVariantDepth = 0;     // plies that were still to be searched
    std::int32_t evaluation = 0;         // for the side that has just moved
    std::int16_t moveRepresentation = 0; // best move from here, as a Polyglot code
    std::uint16_t generation = 0;        // of the table when the slot was last cleared
};

// Bytes of a slot; `Hash` is counted in them.
inline constexpr int ENTRY_SIZE = 12;
static_assert(sizeof(GenericEntry) == ENTRY_SIZE);

// Entries that fit into `mebibytes`, rounded down, 0 if out of range; and the inverse.
int entriesOf(int mebibytes);
int mebibytesOf(int entries);

// An owned array of entries, addressed by the key modulo its size. A table of size 0 has no array;
// no entry may then be asked for.
class HashTable {
public:
    explicit HashTable(int _size) { allocate(_size); }
    HashTable(const HashTable&) = delete;
    HashTable& operator=(const HashTable&) = delete;
    ~HashTable() { deallocate(); }

    // Allocates fresh entries. A size of 0 or below, or too little memory, gives size 0. Requires
    // deallocate() before, except in the constructor.
    void allocate(int _size);
    void deallocate();
    // Changes the size, losing all entries; does nothing if the size is the same.
    void resize(int _newSize);

    bool isEmpty() const { return size == 0; }
    int getSize() const { return size; }

    // Sets the state of every slot to FREE; the rest of a slot stays. Takes constant time: a slot
    // of an old generation is freed when it is next asked for. Invalidates references to entries.
    void empty();

    // Empties the table and writes to every memory page of it, so that the system provides them now
    // and not during a search.
    void touchPages();

    // The entry at an index below the size.
    GenericEntry& getEntry(std::signed_integral auto index) { return upToDate(table[index]); }
    // The slot of a key. `clash` becomes whether a position with another check value wrote it,
    // whatever its state; clashes are counted.
    GenericEntry& getEntry(std::unsigned_integral auto hash, bool& clash) {
        GenericEntry& entry = upToDate(table[hash % static_cast<std::uint64_t>(size)]);
        clash = entry.checkHashProduction != getCheckValue(hash);
        numberOfInnerClashes += clash ? 1 : 0;
        return entry;
    }
    GenericEntry& getEntry(std::unsigned_integral auto hash) {
        bool clash = false;
        return getEntry(hash, clash);
    }

    std::int64_t getNumberOfInnerClashes() const { return numberOfInnerClashes; }

    // The part of a key that distinguishes the positions of one slot: its top 16 bits.
    static std::uint16_t getCheckValue(std::uint64_t hash) {
        return static_cast<std::uint16_t>(hash >> 48);
    }

private:
    GenericEntry& upToDate(GenericEntry& entry) const {
        if (entry.generation != generation) {
            entry.state = FREE;
            entry.generation = generation;
        }
        return entry;
    }

    int size = 0;
    GenericEntry* table = nullptr;
    std::uint16_t generation = 0; // how often the table was emptied, modulo 65536
    std::int64_t numberOfInnerClashes = 0;
};
