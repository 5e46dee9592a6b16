// A game: the current position and the keys of all positions so far.
#pragma once

#include "board/position.h"

#include <cstdint>
#include <vector>

struct Game {
    Position position;
    std::vector<std::uint64_t> repetitionHashes; // one key per position, the current one last
};
