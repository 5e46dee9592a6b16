// Lines of moves as parts of a game.
#pragma once

#include "board/game.h"
#include "search/variant.h"

// Plays a legal move.
void playOn(Game& game, const Move& move);

// Cuts a line after the first move that ends the game: by mate, stalemate, the third occurrence of
// a position, or the fiftieth move of both sides without a capture or a pawn move.
void cutAtGameEnd(const Game& game, Variant& line);
