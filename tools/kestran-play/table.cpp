#include "kestran-play/table.h"

#include "base/cppIoUtils.h"
#include "notation/fen.h"
#include "support/commandLine.h"
#include "support/san.h"

#include <functional>
#include <map>
#include <ostream>

namespace {

constexpr const char* COMMANDS = R"(  e4, Nf3, O-O, e2e4   a move
  back                 takes your last move back
  hint                 what the engine would play
  why                  why the engine has played its last move
  why Nf3              why it has not played another one there
  board, moves, fen    show where the game stands
  flip                 turns the board
  switch               changes sides: the engine moves for you
  new                  begins the game again
  resign               gives it up
  pgn                  shows the game in PGN
  quit                 leaves; so does the end of input
)";

// The one legal move that a text names. UsageError if it names none, or leaves open which.
Move pickMove(const Position& position, const std::string& text) {
    const std::vector<Move> moves = findMoves(position, text);
    if (moves.empty()) {
        throw UsageError("\"" + text + R"(" is no move here, and no command; "help" lists those)");
    }
    if (moves.size() > 1) {
        std::string choice;
        for (const Move& move : moves) {
            choice.append(1, ' ').append(toSan(position, move));
        }
        throw UsageError("\"" + text + "\" can mean more than one move:" + choice);
    }
    return moves.front();
}

} // namespace

Table::Table(const Game& _start, Color _human, const Strength& strength, const BoardStyle& _style,
             std::ostream& _out)
    : start(_start), record(_start), human(_human), opponent(strength), style(_style), out(_out) {
}

void Table::begin() {
    if (isHumansTurn() || record.isOver()) {
        show();
    } else {
        letEngineMove();
    }
}

std::string Table::getPrompt() const {
    if (record.isOver()) {
        return "over> ";
    }
    return moveNumber(record.getPosition().colorToMove, getPly()) + " ";
}

bool Table::handleLine(const std::string& line) {
    const std::vector<std::string> words = splitString(line);
    if (words.empty()) {
        return true;
    }
    const std::map<std::string, std::function<void()>> commands = {
        {"back", [this] { takeBack(); }},
        {"hint", [this] { showHint(); }},
        {"board", [this] { show(); }},
        {"moves", [this] { out << record.getMoveText() << '\n'; }},
        {"fen", [this] { out << getFen(record.getPosition()) << '\n'; }},
        {"flip",
         [this] {
             style.bottom = opposite(style.bottom);
             show();
         }},
        {"switch", [this] { changeSides(); }},
        {"new", [this] { startAgain(); }},
        {"resign", [this] { resign(); }},
        {"pgn", [this] { out << record.getPgn(human); }},
        {"help", [this] { out << COMMANDS; }},
    };
    try {
        const auto command = commands.find(words[0]);
        if (words[0] == "quit" || words[0] == "exit") {
            return false;
        }
        if (words[0] == "why" && words.size() <= 2) {
            explain(words.size() == 2 ? words[1] : "");
        } else if (command != commands.end() && words.size() == 1) {
            command->second();
        } else if (words.size() == 1) {
            handleMove(words[0]);
        } else {
            throw UsageError("one move or command at a time, please; \"help\" lists them");
        }
    } catch (const UsageError& error) {
        out << error.what() << '\n';
    }
    return true;
}

std::string Table::getPgn() const {
    return record.getMoves().empty() ? "" : record.getPgn(human);
}

// ---- Commands ----

void Table::handleMove(const std::string& text) {
    requireGame();
    record.play(pickMove(record.getPosition(), text));
    record.isOver() ? show() : letEngineMove();
}

// Back to where the person was to move last.
void Table::takeBack() {
    const int plies = isHumansTurn() ? 2 : 1;
    if (getPly() < plies) {
        throw UsageError("there is no move of yours to take back");
    }
    record.takeBack(plies);
    reason.reset();
    show();
}

void Table::showHint() {
    requireGame();
    const Thought thought = opponent.think(record.getGame());
    out << describe(record.getPosition(), thought, getPly()) << '\n';
}

void Table::explain(const std::string& text) {
    if (!reason) {
        throw UsageError("there is no move of the engine to explain");
    }
    std::optional<Move> other;
    if (!text.empty()) {
        other = pickMove(reason->game.position, text);
    }
    out << opponent.explain(reason->game, reason->thought, other) << '\n';
}

void Table::changeSides() {
    requireGame();
    human = opposite(human);
    style.bottom = human;
    letEngineMove();
}

void Table::startAgain() {
    record = GameRecord(start);
    reason.reset();
    begin();
}

void Table::resign() {
    requireGame();
    record.resign(human);
    out << record.getEnd() << '\n';
}

// ---- The game ----

void Table::requireGame() const {
    if (record.isOver()) {
        throw UsageError(R"(the game is over; "back", "new" and "quit" lead on)");
    }
}

void Table::letEngineMove() {
    const Game& game = record.getGame();
    Progress progress;
    progress.show("Kestran thinks");
    reason = {game, opponent.think(game)};
    progress.show("");
    const Move move = reason->thought.line.front();
    const std::string text = toNumberedSan(game.position, move, getPly());
    record.play(move);
    show();
    out << "Kestran plays " << text << '\n';
}

void Table::show() {
    const std::vector<Move>& moves = record.getMoves();
    out << '\n'
        << drawBoard(record.getPosition(), moves.empty() ? nullptr : &moves.back(), style) << '\n';
    if (record.isOver()) {
        out << record.getEnd() << '\n';
    }
}
