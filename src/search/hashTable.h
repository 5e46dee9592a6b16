// The storage of the transposition table: entries addressed by the position key. TranspositionTable
// decides what is written and read.
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

// One slot: the value of the move into a position, for the side that made it. A fresh slot is all
// zero bytes.
struct GenericEntry {
    std::uint16_t checkHashProduction = 0; // top 16 bits of the position's key
    HashTableEntryState state = FREE;
    std::int8_t maxVariantDepth = 0;     // plies of tree search after the move
    std::int32_t evaluation = 0;         // the value, for the side that made the move
    std::int16_t moveRepresentation = 0; // best reply, as a Polyglot code; 0 if none
    std::uint16_t generation = 0;        // of the table when the slot was last accessed
};

// Bytes per slot; the option `Hash` is converted to entries of this size.
inline constexpr int ENTRY_SIZE = 12;
static_assert(sizeof(GenericEntry) == ENTRY_SIZE);

// The number of entries that fit into `mebibytes`, 0 if out of range; and the size of `entries` in
// mebibytes. Both are rounded down.
int entriesOf(int mebibytes);
int mebibytesOf(int entries);

// An owned array of entries, addressed by the key modulo its size. A table of size 0 has no array;
// getEntry() must not be called then.
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
    // of an old generation is freed when it is next accessed. Do not use references to entries
    // after this call.
    void clear();

    // Empties the table and writes to each of its memory pages, so that the system provides them
    // now and not during a search.
    void touchPages();

    // The entry at an index below the size.
    GenericEntry& getEntry(std::signed_integral auto index) { return upToDate(table[index]); }
    // The slot of a key. Sets `clash` to whether the slot holds another check value, whatever its
    // state. Counts the clashes.
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

    // The part of the entries that are in use, in thousandths, judged by the first thousand.
    int getUsedPermille() const;

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
