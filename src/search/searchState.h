// What all nodes of a search share. While a search runs, it belongs to its thread.
#pragma once

#include "base/engineParameters.h"
#include "board/position.h"
#include "search/hashTable.h"
#include "search/moveOrder.h"
#include "search/nodeCounter.h"
#include "search/transpositionTable.h"

#include <algorithm>
#include <cstdint>
#include <span>

struct SearchState {
    explicit SearchState(const EngineConfig& _config)
        : config(_config), table(_config.hashTableSize),
          repetitionTable(REPETITION_TABLE_DEFAULT_SIZE) {}

    // Count a position in or out of the path; the first returns its new count. Both
    // take the position after the move.
    std::uint16_t moveDoneInner(const Position& newPosition) {
        const std::uint64_t key = newPosition.carried.hash;
        return repetitionTable.getEntry(key).increaseRepetitions(key);
    }
    void moveUndoneInner(const Position& oldPosition) {
        const std::uint64_t key = oldPosition.carried.hash;
        repetitionTable.getEntry(key).decreaseRepetitions(key);
    }
    // Counts the positions of a game, told by their keys, and nothing else.
    void countGame(std::span<const std::uint64_t> keys) {
        for (int i = 0; i < repetitionTable.getSize(); ++i) {
            repetitionTable.getEntry(i).clear();
        }
        for (const std::uint64_t key : keys) {
            repetitionTable.getEntry(key).increaseRepetitions(key);
        }
    }

    // Plies of quiescence, as far as there is room for them; 0 switches it off, and a
    // negative setting works as 1.
    int getQuiscenceMaxDepth() const {
        return std::clamp(config.quiscenceMaxDepth, -1, MAX_QUISCENCE_DEPTH);
    }

    const EngineConfig& config;
    TranspositionTable table;
    HashTable<RepetitionEntry> repetitionTable; // positions of the game and the path
    MoveOrder order;
    NodeCounter nodes;
    int actualMoveDepth = 1; // depth of the pass in plies, 1 to MAX_PASSES
};
