#include "support/pgn.h"

#include "base/cppIoUtils.h"
#include "support/gameInput.h"
#include "support/san.h"
#include "support/text.h"

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

} // namespace

std::string toPgn(const PgnGame& game) {
    const NumberedGame start = readGame({game.fen}, "");
    const std::vector<Move> line = readMoves(start.position, game.moves, "the game");
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
    return tags + '\n' + wrapText(joined(splitString(text + ' ' + game.result)), 0, LINE_LENGTH) +
           "\n\n";
}
