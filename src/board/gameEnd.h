// The end of a game by the rules of chess, which the search applies only in part.
#pragma once

#include "board/game.h"

#include <array>
#include <optional>
#include <string>

enum class EndReason { CHECKMATE, STALEMATE, REPETITION, FIFTY_MOVES, MATERIAL };

// The result if a side wins, by colour.
inline constexpr std::array WINS = {"1-0", "0-1"};

struct GameEnd {
    EndReason reason;
    std::string result; // "1-0", "0-1" or "1/2-1/2"
    std::string text;   // one sentence
};

// How a game has ended, or nothing. Checkmate and stalemate come before the draws: the third
// occurrence of a position, fifty moves without a capture or a pawn move, and too little material
// for either side to mate (a king alone, or with one knight or bishop).
std::optional<GameEnd> findGameEnd(const Game& game);
