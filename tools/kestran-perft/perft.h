// Perft: counts the sequences of legal moves of a length, which tells at once whether
// the generation of moves is right.
#pragma once

#include <cstdint>
#include <string>

class CommandLine;
struct Position;

// The sequences of `depth` legal moves from `position`, which is left as it was; 1 for
// the depth 0.
std::int64_t perft(Position& position, int depth);

extern const std::string PERFT_HELP;
// The tool behind its help. Writes to standard output and returns the exit status.
int runPerft(CommandLine& commandLine);
