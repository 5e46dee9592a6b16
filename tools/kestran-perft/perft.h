// kestran-perft: counts sequences of legal moves, and checks the counts of a file.
#pragma once

// The main function of kestran-perft.
int perftMain(int argc, const char* const* argv);
