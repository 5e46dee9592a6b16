// A game with the numbers of its moves.
#pragma once

#include "board/game.h"
#include "board/move.h"

#include <string>

struct NumberedGame : Game {
    int ply; // half moves before the position, counted from White's move 1

    // Plays a legal move.
    void play(const Move& move);
};

// A game at the start position.
NumberedGame makeNewGame();

// Sets `game` to one that starts at the position of `fen`, at move 1 if that has no sixth field,
// and returns an empty text. If the position cannot be played, returns the reason and leaves `game`
// unchanged.
std::string readGameStart(NumberedGame& game, const std::string& fen);

// The position in FEN with all six fields.
std::string getWholeFen(const NumberedGame& game);
