// The positions of the bench. The nodes of all its searches together are the signature of the
// search: a change that is to keep the search as it is keeps this number.
#pragma once

#include "engine/engine.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

struct BenchPosition {
    const char* fen; // of six fields
    int depth;       // plies to search
};

// Openings, middle games and end games, quiet and sharp.
std::span<const BenchPosition> getBenchPositions();

// An engine for a single search, with an empty table whose memory is in use already. `config` must
// outlive it.
std::unique_ptr<Engine> makeFreshEngine(const EngineConfig& config,
                                        const WaitPolicy& waitPolicy = {});

// Searches all positions, each with an empty table, `depth` plies deep if given, and returns the
// nodes and the milliseconds of all searches; nothing if `isStopped` has ended it or, after a line
// on standard error, without the memory for a search.
struct BenchTotal {
    std::int64_t nodes = 0;
    Milliseconds millis = 0;
};
std::optional<BenchTotal> runBench(std::optional<int> depth,
                                   const std::function<bool()>& isStopped);
