// What the tests of the search share.
#pragma once

#include "base/engineParameters.h"
#include "search/score.h"
#include "search/variant.h"
#include "testing/boardSupport.h"

// The parameters of play, with a table that is soon allocated.
inline EngineConfig makeConfig(int hashTableSize = 65536) {
    EngineConfig config = *EngineConfig::getProdConfig();
    config.hashTableSize = hashTableSize;
    return config;
}

// The moves of a line, each with a blank before it.
inline std::string lineOf(const Variant& variant) {
    std::string text;
    for (int i = 0; i < variant.varLength; ++i) {
        text += ' ' + LongAlgebraicMove(variant.get(i).move).toString();
    }
    return text;
}
