// Where a line of moves ends the game.
#pragma once

#include "board/game.h"
#include "search/engineParameters.h"
#include "search/variant.h"

#include <functional>

// Cuts a line after the first move that ends the game: by mate, stalemate, the third occurrence of
// a position, or the fiftieth move of both sides without a capture or a pawn move.
void cutAtGameEnd(const Game& game, Variant& line);

// Completes the line of a mate score that ends before the mate, as it does if the score of one of
// its moves came from the table. Searches the rest without a table; gives up after some
// milliseconds, or when `isStopped`, and leaves the line as it is. A mate that is further away than
// a line is long is left alone.
void completeMate(const EngineConfig& config, const Game& game, Variant& line,
                  const std::function<bool()>& isStopped);
