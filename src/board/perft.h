// Counts of move sequences, which check the move generator.
#pragma once

#include <cstdint>

struct Position;

// The sequences of `depth` legal moves from `position`, which is left as it was; 1 for the depth 0.
// Without `playsLast`, does not play the last move of a sequence, which takes much less time but
// checks less.
std::int64_t perft(Position& position, int depth, bool playsLast = true);
