// The bench: a fixed set of positions, searched to fixed depths. The nodes of all its
// searches together are the signature of the search: a change that is to keep the search
// as it is keeps this number.
#pragma once

#include "engine/bench.h"

class TestStatistics;

// Searches a position with a fresh engine, and counts in `statistics` unless
// that is null. UsageError if there is no memory for the table.
SearchResult searchAfresh(const EngineConfig& config, const Position& position, int depth,
                          TestStatistics* statistics = nullptr);

// The main function of kestran-bench.
int benchMain(int argc, const char* const* argv);
