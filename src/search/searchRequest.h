// The request for a search, and its result.
#pragma once

#include "board/game.h"
#include "search/infoStruct.h"
#include "search/searchLimits.h"

#include <cstdint>
#include <optional>

struct SearchRequest {
    int number = 0; // chosen by the caller; repeated in every report and in the result
    SearchLimits limits;
    Game game; // the position to search, with the keys of the game so far
};

struct SearchResult {
    int number = 0; // of the request
    // The best line. If a timed search has finished no pass, one legal move. Empty if there is no
    // legal move.
    Variant line;
    std::optional<InfoStruct> report; // of the last finished pass, if there was one
    std::int64_t nodes = 0; // moves counted until its end, or its last poll if it is winding down
    Milliseconds time = 0;  // from the start of the search to the result
};
