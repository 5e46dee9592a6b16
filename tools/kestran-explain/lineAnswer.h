// The answer, in words, to the question why the search did not follow a line.
#pragma once

#include "board/game.h"
#include "kestran-explain/searchLimit.h"
#include "kestran-explain/watchedLine.h"
#include "search/engineParameters.h"

#include <string>

// One sentence that says where the last good pass left the line, for which move and by how
// much. Where the record holds only a bound of the move's score, the move is searched
// once more, on its own and with an open window, unless `limit` ends that search.
std::string answerInWords(const EngineConfig& config, const Game& game, const WatchedLine& line,
                          SearchLimit& limit);
