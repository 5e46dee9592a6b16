#include "notation/pgn.h"

#include "base/cppIoUtils.h"
#include "notation/san.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

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

std::string tagText(const std::string& name, const std::string& value) {
    std::string text = '[' + name + " \"";
    for (const char letter : value) {
        text += letter == '"' || letter == '\\' ? std::string{'\\', letter} : std::string{letter};
    }
    return text + "\"]\n";
}

// Words in lines of at most LINE_LENGTH characters, unless a word is longer.
class WordLines {
public:
    void add(const std::string& word) {
        const bool isFirst = text.empty();
        const bool fits = used + 1 + word.size() <= LINE_LENGTH;
        text.append(isFirst ? "" : fits ? " " : "\n").append(word);
        used = isFirst || !fits ? word.size() : used + 1 + word.size();
    }
    // Adds the words in braces, without any brace inside. Returns whether there are words.
    bool addComment(std::string comment) {
        std::replace(comment.begin(), comment.end(), '{', ' ');
        std::replace(comment.begin(), comment.end(), '}', ' ');
        const std::string words = joined(splitString(comment));
        if (words.empty()) {
            return false;
        }
        for (const std::string& word : splitString('{' + words + '}')) {
            add(word);
        }
        return true;
    }

    std::string text{};

private:
    std::size_t used = 0; // of the last line
};

} // namespace

std::string PgnGame::getTag(const std::string& name) const {
    const auto place =
        std::find_if(tags.begin(), tags.end(), [&](const auto& tag) { return tag.first == name; });
    return place != tags.end() ? place->second : "";
}

void PgnGame::setTag(const std::string& name, const std::string& value) {
    const auto place =
        std::find_if(tags.begin(), tags.end(), [&](const auto& tag) { return tag.first == name; });
    if (place != tags.end()) {
        place->second = value;
    } else {
        tags.emplace_back(name, value);
    }
}

NumberedGame PgnGame::after(std::size_t ply) const {
    NumberedGame game = start;
    for (std::size_t i = 0; i < ply; ++i) {
        game.play(moves[i].move);
    }
    return game;
}

PgnGame beginPgnGame(const std::string& event, const std::string& round, const std::string& white,
                     const std::string& black) {
    PgnGame game;
    game.tags = {{"Event", event}, {"Site", "?"},    {"Date", today()}, {"Round", round},
                 {"White", white}, {"Black", black}, {"Result", "*"}};
    return game;
}

std::string toPgn(const PgnGame& game) {
    PgnGame tagged = game;
    tagged.setTag("Result", game.result);
    const std::string fen = getWholeFen(game.start);
    if (fen != getWholeFen(makeNewGame())) {
        tagged.setTag("SetUp", "1");
        tagged.setTag("FEN", fen);
    }
    std::string text;
    for (const auto& [name, value] : tagged.tags) {
        text += tagText(name, value);
    }

    WordLines lines;
    lines.addComment(game.comment);
    NumberedGame present = game.start;
    bool isNumbered = true;
    for (const auto& [move, nag, comment] : game.moves) {
        const Color color = present.position.colorToMove;
        if (isNumbered || color == WHITE) {
            lines.add(moveNumber(color, present.ply));
        }
        lines.add(toSan(present.position, move));
        if (nag != 0) {
            lines.add('$' + std::to_string(nag));
        }
        isNumbered = lines.addComment(comment);
        present.play(move);
    }
    lines.add(game.result);
    return text + '\n' + lines.text + "\n\n";
}
