// The answer, in words, to the question why the search did not follow a line.
#pragma once

#include "board/game.h"
#include "kestran-explain/searchLimit.h"
#include "kestran-explain/watchedLine.h"
#include "search/engineParameters.h"

#include <string>

// What the last good pass preferred where it left the line, then why, then details. A move of which
// the record holds only a bound is searched again on its own, with an open window. If the line
// begins with the engine's own move, the best other moves are searched as well. `limit` ends these
// searches.
std::string answerInWords(const EngineConfig& config, const Game& game, const WatchedLine& line,
                          SearchLimit& limit);
