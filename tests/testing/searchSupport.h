// What the tests of the search share.
#pragma once

#include "base/engineParameters.h"
#include "search/searchRepresentation.h"
#include "testing/boardSupport.h"

#include <memory>

// The parameters of play, with a table that is soon allocated.
inline std::unique_ptr<EngineConfig> makeConfig(int hashTableSize = 65536) {
    auto config = EngineConfig::getProdConfig();
    config->hashTableSize = hashTableSize;
    return config;
}

// The legal move of a text, which there must be.
inline Move moveOf(const Position& position, const std::string& text) {
    const std::vector<Move> moves = legalMovesOf(position);
    const int index =
        LongAlgebraicMove(text).getIndexOfMove(moves.data(), static_cast<int>(moves.size()));
    return moves.at(static_cast<std::size_t>(index));
}

// The moves of a line, each with a blank before it.
inline std::string lineOf(const Variant& variant) {
    std::string text;
    for (int i = 0; i < variant.varLength; ++i) {
        text += ' ' + LongAlgebraicMove(variant.get(i).move).toString();
    }
    return text;
}
