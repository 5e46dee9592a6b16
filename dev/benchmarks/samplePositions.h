// What the benchmarks work on.
#pragma once

#include "board/position.h"
#include "kestran-bench/bench.h"
#include "notation/fen.h"

#include <vector>

// The positions of the bench, from all phases of the game.
inline std::vector<Position> getSamplePositions() {
    std::vector<Position> positions;
    for (const BenchPosition& benchPosition : getBenchPositions()) {
        setFenNotation(positions.emplace_back(), benchPosition.fen);
    }
    return positions;
}
