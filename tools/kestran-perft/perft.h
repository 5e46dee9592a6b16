// Perft: counts the sequences of legal moves of a given length, which checks the move generator.
#pragma once

#include <cstdint>

struct Position;

// The sequences of `depth` legal moves from `position`, which is left as it was; 1 for
// the depth 0.
std::int64_t perft(Position& position, int depth);

// The main function of kestran-perft.
int perftMain(int argc, const char* const* argv);
