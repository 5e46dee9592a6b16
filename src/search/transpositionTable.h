// The policy of the transposition table: what it stores, and how its entries are used.
//
// The node that tries a move stores the value of the move under the key of the position after it.
// So every `position` below is one after a move, and every score and bound is for the side that
// made the move.
#pragma once

#include "board/position.h"
#include "search/hashTable.h"

class TranspositionTable {
public:
    // A table of `size` entries. A size of 0 or below, or too little memory, gives an empty table,
    // which stores nothing and finds nothing.
    explicit TranspositionTable(int size) : hashTable(size) {}

    // Stores the value of the move into `position`, searched `maxVariantDepth` plies deep in the
    // window `alfa`, `beta`. `firstVariantMove` is the best reply, or null. Overwrites the slot,
    // but keeps its move if there is no reply.
    void addTableEntry(const Position& position, const Move* firstVariantMove, int maxVariantDepth,
                       int evaluation, int alfa, int beta);
    // If the table holds the exact value of the move into `position`, searched at least
    // `maxVariantDepth` plies deep, stores it in `evaluation` and returns true. Otherwise returns
    // false and leaves `evaluation` unchanged.
    bool useTableEntry(const Position& position, int maxVariantDepth, int& evaluation);
    // Whether the table shows that the move into `position` is worse than the best move of its node
    // so far by more than LMF_MARGIN. `alfa` and `originalAlfa` are the node's lower bound now and
    // at its start: if they are equal, there is no best move, and the result is false.
    // `maxVariantDepth` is the depth still to be searched, in plies.
    bool lmf(const Position& position, int alfa, int originalAlfa, int maxVariantDepth);
    // The move to try first in `position`, as a Polyglot code, or 0. It may belong to another
    // position with the same slot; that affects only the order of moves.
    std::int16_t getBestMoveHint(const Position& position);
    // The move of the slot of `position`, whatever its state, as a Polyglot code. Requires a
    // table that is not empty.
    std::int16_t getAnyMove(const Position& position);

    // Sets every slot to FREE; its move and check value stay. Takes constant time.
    void clearTable() { hashTable.clear(); }
    // Changes the size, losing all entries; does nothing if the size is the same. Returns the new
    // size, which is 0 if out of memory.
    int resize(int size);
    // Clears the table and makes the system provide its memory now.
    void touchPages() { hashTable.touchPages(); }

    bool isEmpty() const { return hashTable.isEmpty(); }
    int getSize() const { return hashTable.getSize(); }
    HashTable& getHashTable() { return hashTable; }
    const HashTable& getHashTable() const { return hashTable; }

private:
    HashTable hashTable;
};
