// The bench: a fixed set of positions, searched to fixed depths. The nodes of all its
// searches together are the signature of the search: a change that is to keep the search
// as it is keeps this number.
#pragma once

#include "base/clock.h"
#include "board/position.h"
#include "engine/bench.h"
#include "search/variant.h"

#include <cstdint>
#include <string>
#include <vector>

class TestStatistics;

// What one search of the bench has found.
struct BenchResult {
    Variant line;        // with its score in thousandths of a pawn for the side to move
    std::int64_t nodes;  // moves played, in the tree and in quiescence
    Milliseconds millis; // of the search alone
};

// Searches a position with a FreshEngine, and counts in `statistics` unless that is null.
BenchResult searchAfresh(const Position& position, int depth, int hashMebibytes,
                         TestStatistics* statistics = nullptr,
                         const std::vector<std::string>& settings = {});

// The main function of kestran-bench.
int benchMain(int argc, const char* const* argv);
