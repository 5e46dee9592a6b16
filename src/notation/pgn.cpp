#include "notation/pgn.h"

#include "base/cppIoUtils.h"
#include "board/makeMove.h"
#include "notation/longAlgebraicMove.h"
#include "notation/numberedGame.h"
#include "notation/san.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <utility>

namespace {

constexpr std::size_t LINE_LENGTH = 79;

std::string today() {
    const std::chrono::year_month_day day(
        std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now()));
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%04d.%02u.%02u", static_cast<int>(day.year()),
                  static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()));
    return text.data();
}

std::string tag(const std::string& name, const std::string& value) {
    std::string text = '[' + name + " \"";
    for (const char letter : value) {
        text += letter == '"' || letter == '\\' ? std::string{'\\', letter} : std::string{letter};
    }
    return text + "\"]\n";
}

// In braces, without any brace inside.
std::string comment(std::string text) {
    std::erase(text, '{');
    std::erase(text, '}');
    return '{' + text + '}';
}

// The words of a text in lines of at most LINE_LENGTH characters, unless a word is longer.
std::string inLines(const std::string& text) {
    std::string lines;
    std::size_t used = 0; // of the last line
    for (const std::string& word : splitString(text)) {
        const bool fits = used + 1 + word.size() <= LINE_LENGTH;
        lines += lines.empty() ? "" : fits ? " " : "\n";
        used = lines.empty() || !fits ? word.size() : used + 1 + word.size();
        lines += word;
    }
    return lines;
}

// The moves of a legal line.
std::vector<Move> movesOf(NumberedGame game, const std::string& text) {
    std::vector<Move> line;
    for (const std::string& word : splitString(text)) {
        MoveArray legal;
        const int count = generateLegalMoves(game.position, legal);
        line.push_back(legal[LongAlgebraicMove(word).getIndexOfMove(legal.first(count))]);
        game.play(line.back());
    }
    return line;
}

} // namespace

std::string toPgn(const PgnGame& game) {
    NumberedGame start = makeNewGame();
    if (!game.fen.empty()) {
        readGameStart(start, game.fen);
    }
    const std::vector<Move> line = movesOf(start, game.moves);
    std::string text = lineToSan(start.position, line, start.ply);
    text += game.comment.empty() ? "" : ' ' + comment(game.comment);

    std::string tags = tag("Event", game.event) + tag("Site", "?") + tag("Date", today()) +
                       tag("Round", game.round) + tag("White", game.white) +
                       tag("Black", game.black) + tag("Result", game.result);
    for (const auto& [name, value] :
         {std::pair{"Termination", game.termination}, {"TimeControl", game.timeControl}}) {
        tags += value.empty() ? "" : tag(name, value);
    }
    if (!game.fen.empty()) {
        tags += tag("SetUp", "1") + tag("FEN", game.fen);
    }
    return tags + '\n' + inLines(text + ' ' + game.result) + "\n\n";
}
