#include "kestran-play/table.h"

#include "base/cppIoUtils.h"
#include "board/attacks.h"
#include "notation/san.h"
#include "support/terminal.h"
#include "support/text.h"

#include <functional>
#include <map>
#include <optional>
#include <ostream>

namespace {

constexpr const char* COMMANDS = R"(  e4, Nf3, O-O, e2e4   a move
  back                 takes your last move back; so do undo and takeback
  hint                 what the engine would play
  why                  why the engine played its last move
  why Nf3              why it did not play this move instead
  time S               the engine thinks S seconds about each move
  level N              the engine plays at level N; the ratings are estimates
  level                lists the levels
  depth N              the engine looks at most N plies ahead; fewer are weaker
  board, moves, fen    show the game
  flip                 turns the board
  switch               changes sides: the engine moves for you
  new                  begins a new game
  resign               resigns the game
  pgn                  shows the game in PGN
  quit                 leaves; so do Ctrl-C and the end of input
)";

// Why `text` names no legal move.
std::string whyNoMove(const Position& position, const std::string& text) {
    const bool looksLikeMove =
        text.find_first_of("12345678") != std::string::npos || text.find("O-O") == 0;
    if (!looksLikeMove) {
        return '"' + text + R"(" is neither a move nor a command; "help" lists the commands)";
    }
    for (const char* suffix : {"q", "=Q"}) {
        if (const std::vector<Move> moves = findMoves(position, text + suffix); moves.size() == 1) {
            const std::string san = toSan(position, moves.front());
            return "to promote, type " + san.substr(0, san.find_last_not_of("+#") + 1);
        }
    }
    if (isInCheckNoCaching(position)) {
        return '"' + text + "\" is not possible: you are in check";
    }
    return '"' + text + "\" is not a legal move here";
}

// The one legal move that a text names. UsageError if it names none or more than one.
Move pickMove(const Position& position, const std::string& text) {
    std::string fault;
    if (const std::optional<Move> move = findMove(position, text, fault)) {
        return *move;
    }
    const bool isUnknown = findMoves(position, text).empty();
    throw UsageError(isUnknown ? whyNoMove(position, text) : '"' + text + "\" " + fault);
}

} // namespace

Table::Table(const NumberedGame& start, Color _human, const Strength& strength,
             const BoardStyle& _style, GameKeeper& _keeper, std::ostream& _out)
    : record(start), human(_human), opponent(strength), style(_style), keeper(_keeper), out(_out) {
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
        return "game over> ";
    }
    return moveNumber(record.getPosition().colorToMove, record.getGame().ply) + " ";
}

bool Table::handleLine(const std::string& line) {
    const std::vector<std::string> words = splitString(line);
    if (words.empty()) {
        return true;
    }
    if (words[0] == "quit" || words[0] == "exit") {
        return false;
    }
    try {
        handleWords(words);
    } catch (const UsageError& error) {
        out << error.what() << '\n';
    }
    return true;
}

void Table::handleWords(const std::vector<std::string>& words) {
    // The name of a command with a value ends in a blank.
    const std::map<std::string, std::function<void()>> commands = {
        {"back", [this] { takeBack(); }},
        {"undo", [this] { takeBack(); }},
        {"takeback", [this] { takeBack(); }},
        {"hint", [this] { showHint(); }},
        {"why", [this] { explain(""); }},
        {"why ", [&] { explain(words[1]); }},
        {"board", [this] { show(); }},
        {"moves", [this] { out << record.getLastMoves(record.countPlies()) << '\n'; }},
        {"fen", [this] { out << getWholeFen(record.getGame()) << '\n'; }},
        {"flip",
         [this] {
             style.bottom = opposite(style.bottom);
             show();
         }},
        {"switch", [this] { changeSides(); }},
        {"new", [this] { startAgain(); }},
        {"resign", [this] { resign(); }},
        {"pgn", [this] { out << getPgn(); }},
        {"time ", [&] { setTime(words[1]); }},
        {"level", [this] { out << getLevelTable(); }},
        {"level ", [&] { setLevel(words[1]); }},
        {"depth ", [&] { setDepth(words[1]); }},
        {"help", [this] { out << COMMANDS; }},
    };
    const auto command = commands.find(words[0] + (words.size() > 1 ? " " : ""));
    if (words.size() <= 2 && command != commands.end()) {
        command->second();
    } else if (words.size() == 1 && !commands.contains(words[0] + ' ')) {
        handleMove(words[0]);
    } else {
        throw UsageError(R"(type one move or command at a time; "help" lists them)");
    }
}

// ---- Commands ----

void Table::handleMove(const std::string& text) {
    requireGame();
    record.play(pickMove(record.getPosition(), text));
    if (record.isOver()) {
        show();
    }
    keepGame();
    if (!record.isOver()) {
        letEngineMove();
    }
}

// Returns to the last position in which the person was to move.
void Table::takeBack() {
    const int plies = isHumansTurn() ? 2 : 1;
    if (record.countPlies() < plies) {
        throw UsageError("you have no move to take back");
    }
    const std::string moves = record.getLastMoves(plies);
    record.takeBack(plies);
    keepGame();
    reason.reset();
    show();
    out << "Taken back: " << moves << '\n';
}

void Table::setTime(const std::string& text) {
    opponent.strength.time = parseSeconds(text, "time", MAX_SECONDS);
    out << "The engine thinks " << text << " s about each move.\n";
}

void Table::setDepth(const std::string& text) {
    const int depth = parseNumber(text, "depth", 1, MAX_PASSES);
    opponent.strength.depth = depth;
    out << "The engine looks at most " << depth << (depth == 1 ? " ply" : " plies") << " ahead.\n";
}

void Table::setLevel(const std::string& text) {
    const int level = parseNumber(text, "level", 1, LEVEL_COUNT);
    opponent.strength.level = getLevel(level);
    out << "Level " << level << ": " << describeLevel(level) << ".\n";
}

void Table::showHint() {
    requireGame();
    out << describe(record.getGame(), opponent.think(record.getGame())) << '\n';
}

void Table::explain(const std::string& text) {
    if (!reason) {
        throw UsageError("the engine has no move to explain");
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
    keeper.leave();
    record.takeBack(record.countPlies());
    reason.reset();
    begin();
}

void Table::resign() {
    requireGame();
    record.resign(human);
    out << record.getEnd() << '\n';
    keepGame();
}

// ---- The game ----

void Table::requireGame() const {
    if (record.isOver()) {
        throw UsageError(R"(the game is over; type "back", "new" or "quit")");
    }
}

void Table::letEngineMove() {
    const NumberedGame game = record.getGame();
    Progress progress;
    progress.show("Kestran is thinking");
    reason = {game, opponent.think(game)};
    progress.show("");
    const Move move = reason->thought.line.get(0).move;
    record.play(move);
    show();
    out << "Kestran plays " << toNumberedSan(game.position, move, game.ply) << '\n';
    keepGame();
}

void Table::keepGame() {
    keeper.keep(record.getMoves().empty() ? "" : getPgn());
    if (record.isOver()) {
        keeper.leave();
    }
}

void Table::show() {
    const std::vector<Move>& moves = record.getMoves();
    out << '\n'
        << drawBoard(record.getPosition(), moves.empty() ? nullptr : &moves.back(), style) << '\n';
    if (record.isOver()) {
        out << record.getEnd() << '\n';
    }
}
