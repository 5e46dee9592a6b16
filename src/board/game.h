// A game: where it stands and where it has been.
#pragma once

#include "board/position.h"

#include <cstdint>
#include <vector>

struct Game {
    Position position;
    std::vector<std::uint64_t> repetitionHashes; // key of every position, the present one last
};
