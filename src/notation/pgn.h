// Games in PGN, the notation that chess programs exchange games in.
#pragma once

#include "notation/numberedGame.h"

#include <string>
#include <utility>
#include <vector>

// A move with what is written after it.
struct PgnMove {
    Move move;
    int nag = 0;           // a numeric annotation glyph, such as 1 for "!"; 0 for none
    std::string comment{}; // empty for none
};

struct PgnGame {
    std::vector<std::pair<std::string, std::string>> tags{}; // names and values, in their order
    NumberedGame start = makeNewGame();
    std::string comment{}; // before the first move
    std::vector<PgnMove> moves{};
    std::string result = "*"; // "1-0", "0-1", "1/2-1/2", or "*" for none

    // The value of a tag; empty if there is none of this name.
    std::string getTag(const std::string& name) const;
    // Changes a tag, or adds it at the end.
    void setTag(const std::string& name, const std::string& value);
    // The game after the first `ply` of its moves. Requires at least that many.
    NumberedGame after(std::size_t ply) const;
};

// A game without moves, played on the day of the call.
PgnGame beginPgnGame(const std::string& event, const std::string& round, const std::string& white,
                     const std::string& black);

// The game as a text that ends with an empty line. The tags of the result and of the start position
// are those of `result` and `start`.
std::string toPgn(const PgnGame& game);
