// Games in PGN, the notation that chess programs exchange games in.
#pragma once

#include <string>

struct PgnGame {
    std::string event{};
    std::string round = "?";
    std::string white{};
    std::string black{};
    std::string result = "*";  // "1-0", "0-1", "1/2-1/2", or "*" for none
    std::string termination{}; // in the terms of PGN, empty to leave it out
    std::string timeControl{}; // in those too, empty to leave it out
    std::string fen{};         // where the game began, empty for the start position
    std::string moves{};       // legal ones, in long algebraic notation, by blanks
    std::string comment{};     // after the last move
};

// The game with its tags, played on the day of the call, followed by an empty line.
std::string toPgn(const PgnGame& game);
