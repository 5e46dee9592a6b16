// Positions and moves as the user of a tool writes them. All throw UsageError for text
// that cannot be played.
#pragma once

#include "board/game.h"

#include <string>
#include <vector>

// The legal moves that `text` plays from `position`, written as findMoves() takes them, with
// or without move numbers and with a star behind any of them. `what` names the text in a
// message.
std::vector<Move> readMoves(Position position, const std::string& text, const std::string& what);

// The game that `moves` plays from the position that `words` make: a FEN, whole or in
// its fields, or "startpos", or nothing for the start position. Blanks in and around the
// words do no harm.
Game readGame(const std::vector<std::string>& words, const std::string& moves);
