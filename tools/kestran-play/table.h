// The table that a person and the engine sit at: what each command does.
#pragma once

#include "kestran-play/boardView.h"
#include "kestran-play/gameRecord.h"
#include "kestran-play/opponent.h"

#include <iosfwd>
#include <optional>
#include <string>

class Table {
public:
    // `_out` must outlive the object.
    Table(const Game& start, Color _human, const Strength& strength, const BoardStyle& _style,
          std::ostream& _out);

    // Lets the engine move first if it is its turn, and shows the board.
    void begin();
    // What to write before a line is read.
    std::string getPrompt() const;
    // Carries out a line: a command or a move. False if the person leaves.
    bool handleLine(const std::string& line);
    // The game in PGN, empty if nothing was played.
    std::string getPgn() const;

private:
    void handleMove(const std::string& text);
    void takeBack();
    void showHint();
    void explain(const std::string& text);
    void changeSides();
    void startAgain();
    void resign();

    // UsageError if the game is over.
    void requireGame() const;
    void letEngineMove();
    void show();
    bool isHumansTurn() const { return record.getPosition().colorToMove == human; }
    int getPly() const { return static_cast<int>(record.getMoves().size()); }

    // The thought behind the engine's last move, and the game that it was about.
    struct Reason {
        Game game;
        Thought thought;
    };

    Game start;
    GameRecord record;
    Color human;
    Opponent opponent;
    BoardStyle style;
    std::ostream& out;
    std::optional<Reason> reason; // of the last move of the engine that still stands
};
