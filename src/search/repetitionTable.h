// The positions of the game and of the search path, by key, for detecting repetitions.
#pragma once

#include "search/searchParameters.h"

#include <cstdint>
#include <span>
#include <vector>

class RepetitionTable {
public:
    // Replaces all positions by those of a game, the current one last.
    void begin(std::span<const std::uint64_t> game) {
        keys.assign(game.begin(), game.end());
        keys.reserve(game.size() + MAX_PASSES + MAX_QUISCENCE_DEPTH + 1);
    }

    // Adds the position after a move to the path; removes the position added last. The tree search
    // and quiescence call the two around the search of a position, even if the pass is abandoned in
    // between.
    void increaseRepetitions(std::uint64_t key) { keys.push_back(key); }
    void decreaseRepetitions() { keys.pop_back(); }

    // Whether the position after the next move has occurred before. `key` and `clock`, the
    // half-move clock, are those after that move. Looks only at positions since the last pawn move
    // or capture, with the same side to move, and at least four plies back.
    bool isRepetition(std::uint64_t key, int clock) const {
        for (std::size_t back = 4; back <= static_cast<std::size_t>(clock) && back <= keys.size();
             back += 2) {
            if (keys[keys.size() - back] == key) {
                return true;
            }
        }
        return false;
    }
    // Whether isRepetition() can be true for any key at this half-move clock.
    bool canRepeat(int clock) const { return clock >= 4 && keys.size() >= 4; }

private:
    std::vector<std::uint64_t> keys;
};
