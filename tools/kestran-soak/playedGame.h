// A game that has been played, as far as others are to see it.
#pragma once

#include <string>

struct PlayedGame {
    int number = 0;
    unsigned seed = 0;
    std::string fen{};                        // where the game began, empty for the start position
    std::string moves{};                      // legal ones, in long algebraic notation, by blanks
    std::string result = "*";                 // "1-0", "0-1", "1/2-1/2", or "*" for none
    std::string termination = "unterminated"; // in the words of PGN
    std::string timeControl{};                // moves/seconds, or seconds+increment
    std::string fault{};                      // that ended the game, empty for none
};

// The game in PGN.
std::string toPgn(const PlayedGame& game);
