// An engine for a single search.
#pragma once

#include "board/position.h"
#include "engine/engine.h"
#include "search/engineParameters.h"

#include <memory>
#include <string>
#include <vector>

// An engine at a position, with empty tables and the settings of the playing engine, except that
// the hash table has `hashMebibytes`. Throws UsageError if there is no memory for the table.
struct FreshEngine {
    FreshEngine(const Position& position, int hashMebibytes,
                const std::vector<std::string>& settings, const WaitPolicy& waitPolicy = {});

    const std::unique_ptr<EngineConfig> config;
    Engine engine;
};
