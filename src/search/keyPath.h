// The keys of the positions of the game and of the path that the search is on, to see a
// position come back.
#pragma once

#include "search/searchParameters.h"

#include <cstdint>
#include <span>
#include <vector>

class KeyPath {
public:
    // Begins anew with the positions of a game, the present one last.
    void begin(std::span<const std::uint64_t> game) {
        keys.assign(game.begin(), game.end());
        keys.reserve(game.size() + MAX_PASSES + MAX_QUISCENCE_DEPTH + 1);
    }

    void push(std::uint64_t key) { keys.push_back(key); }
    void pop() { keys.pop_back(); }

    // Whether a position stood before, which a move from the last one leads to. `clock` is its
    // half-move clock: no position from before the last capture or pawn move comes back. Nor
    // does one of the other side, or the one two moves ago, which has since lost a man from
    // its place.
    bool isRepetition(std::uint64_t key, int clock) const {
        for (std::size_t back = 4; back <= static_cast<std::size_t>(clock) && back <= keys.size();
             back += 2) {
            if (keys[keys.size() - back] == key) {
                return true;
            }
        }
        return false;
    }
    // Whether any position can have come back at this half-move clock.
    bool canRepeat(int clock) const { return clock >= 4 && keys.size() >= 4; }

private:
    std::vector<std::uint64_t> keys;
};
