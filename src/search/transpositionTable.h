// The policy of the transposition table: what is written to it, and what it is asked.
//
// An entry is written by the node that tries a move, under the key of the position after
// the move, and holds what the move was worth for the side that made it. So every position
// below is one after a move, and every score and bound is the mover's.
#pragma once

#include "board/position.h"
#include "search/hashTable.h"

class TranspositionTable {
public:
    // A table of so many entries. A size of 0 or below, or one for which there is no
    // memory, gives an empty table: nothing is stored, and nothing is answered.
    explicit TranspositionTable(int size) : hashTable(size) {}

    // Stores the value of the move into `position`, searched `maxVariantDepth` plies deep
    // in the window `alfa`, `beta`. What the slot held is lost, except that its move stays if
    // `firstVariantMove`, the first of the line after the move, is null.
    void addTableEntry(const Position& position, const Move* firstVariantMove, int maxVariantDepth,
                       int evaluation, int alfa, int beta);
    // If the table holds the exact value of the move into `position`, searched at least so
    // deep: stores it in `evaluation` and returns true. Otherwise false.
    bool useTableEntry(const Position& position, int maxVariantDepth, int& evaluation);
    // Whether the table says that the move into `position` is worth more than a pawn less
    // than the best move of its node so far. `alfa` and `originalAlfa` are the node's bound
    // now and at its start, `maxVariantDepth` the plies to be searched.
    bool lmf(const Position& position, int alfa, int originalAlfa, int maxVariantDepth);
    // The move to try first in `position`, as a Polyglot code, or 0. It may be that of
    // another position in the same slot, which only means another order.
    std::int16_t getBestMoveHint(const Position& position);
    // The move of the slot of `position`, whatever its state, as a Polyglot code. Not to be
    // asked of an empty table.
    std::int16_t getAnyMove(const Position& position);

    // Makes every slot FREE. What it held as move and check value stays. Takes the same
    // time for every table.
    void clearTable() { hashTable.empty(); }
    // A table of another size, with all entries lost; nothing if the size is the same.
    // Returns the size that there is now: 0 if there was no memory.
    int resize(int size);

    bool isEmpty() const { return hashTable.isEmpty(); }
    HashTable<GenericEntry>& getHashTable() { return hashTable; }

private:
    HashTable<GenericEntry> hashTable;
};
