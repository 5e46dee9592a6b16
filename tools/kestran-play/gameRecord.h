// The game at the terminal: every position of it, and how it has ended.
#pragma once

#include "notation/numberedGame.h"

#include <string>
#include <vector>

class GameRecord {
public:
    // The game may be over at its start.
    explicit GameRecord(const NumberedGame& start);

    const NumberedGame& getGame() const { return states.back(); }
    const Position& getPosition() const { return getGame().position; }
    const std::vector<Move>& getMoves() const { return moves; }
    int countPlies() const { return static_cast<int>(moves.size()); }
    // The last `plies` moves in algebraic notation, such as "2. Nf3 Nc6"; empty for none. Requires
    // at least that many.
    std::string getLastMoves(int plies) const;

    // Plays a legal move. Requires that the game is not over.
    void play(const Move& move);
    // Takes moves back, and with them the end of the game. Requires at least that many moves.
    void takeBack(int plies);
    // A side gives up.
    void resign(Color color);

    // One sentence that says why the game is over, empty while it is not.
    const std::string& getEnd() const { return end.text; }
    bool isOver() const { return !end.text.empty(); }

    // The game in PGN. `human` is the colour of the person.
    std::string getPgn(Color human) const;

private:
    struct End {
        std::string result = "*"; // as in PGN
        std::string text{};       // see getEnd()
    };

    void judge();

    std::vector<NumberedGame> states; // from the start on, the present one last
    std::vector<Move> moves;
    End end;
};
