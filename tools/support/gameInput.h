// Positions and moves as the user of a tool writes them. All throw UsageError for text
// that cannot be played.
#pragma once

#include "notation/epd.h"
#include "notation/pgn.h"

#include <optional>
#include <string>
#include <vector>

class Program;

// How the help describes the words of a position and a game from it.
inline constexpr const char* FEN_HELP =
    "the position, quoted or not; startpos, or nothing, for the start";
inline constexpr const char* MOVES_HELP =
    "moves to play from there: \"1. e4 e5 2. Nf3\", with or without move numbers, or "
    "\"e2e4 e7e5 g1f3\"";

// The legal moves that `text` plays from `position`, written as findMoves() takes them, with
// or without move numbers and with a star after any of them. `what` names the text in a
// message.
std::vector<Move> readMoves(Position position, const std::string& text, const std::string& what);

// A position of a game in a PGN file.
struct PgnSource {
    std::optional<std::string> path;
    int game = 1;           // of the file, from 1
    std::optional<int> ply; // half moves to play; all if not given
};

// Declares --pgn, --game and --ply.
void addPgnOptions(Program& program, PgnSource& source);

// The game as a whole. Requires a path.
PgnGame readWholeGame(const PgnSource& source);

// The game up to that position. Requires a path.
NumberedGame readPgnGame(const PgnSource& source);

// The game that `moves` plays from the position of `pgn`, or from the one that `words` make: a FEN,
// whole or in its fields, or "startpos", or nothing for the start position. Blanks in and around
// the words do no harm. Without a sixth field, the position is at move 1.
NumberedGame readGame(const std::vector<std::string>& words, const std::string& moves,
                      const PgnSource& pgn = {});

// The positions of a file in EPD, at least one.
std::vector<EpdRecord> readEpdFile(const std::string& path);
