// A game between a person and the engine: what each command does.
#pragma once

#include "kestran-play/boardView.h"
#include "kestran-play/gameKeeper.h"
#include "kestran-play/gameRecord.h"
#include "kestran-play/opponent.h"

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

class Table {
public:
    // `_keeper` and `_out` must outlive the object.
    Table(const NumberedGame& start, Color _human, const Strength& strength,
          const BoardStyle& _style, GameKeeper& _keeper, std::ostream& _out);

    // Lets the engine move first if it is its turn, and shows the board.
    void begin();
    // What to write before a line is read.
    std::string getPrompt() const;
    // Carries out a line: a command or a move. False if the person leaves.
    bool handleLine(const std::string& line);
    // The game in PGN.
    std::string getPgn() const { return record.getPgn(human); }

private:
    void handleMove(const std::string& text);
    void handleWords(const std::vector<std::string>& words);
    void takeBack();
    void setTime(const std::string& text);
    void setLevel(const std::string& text);
    void setDepth(const std::string& text);
    void showHint();
    void explain(const std::string& text);
    void changeSides();
    void startAgain();
    void resign();

    // UsageError if the game is over.
    void requireGame() const;
    void letEngineMove();
    // Hands the game to the keeper, and has it written if it is over.
    void keepGame();
    void show();
    bool isHumansTurn() const { return record.getPosition().colorToMove == human; }

    // The thought that led to the engine's last move, and the game that it was about.
    struct Reason {
        NumberedGame game;
        SearchResult thought;
    };

    GameRecord record;
    Color human;
    Opponent opponent;
    BoardStyle style;
    GameKeeper& keeper; // of the game as it is now
    std::ostream& out;
    std::optional<Reason> reason; // of the last move of the engine that was not taken back
};
