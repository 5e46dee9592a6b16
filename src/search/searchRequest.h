// What a search is asked for, and what it has found.
#pragma once

#include "board/game.h"
#include "search/infoStruct.h"
#include "search/searchLimits.h"

#include <optional>

struct SearchRequest {
    int number = 0; // the caller's; every report and the result carry it
    SearchLimits limits;
    Game game; // the position to search, with the keys of the game so far
};

struct SearchResult {
    int number = 0; // of the request
    // The best line; without a finished pass, a legal move. Empty if there is no legal move.
    Variant line;
    std::optional<InfoStruct> report; // of the last finished pass, if there was one
};
