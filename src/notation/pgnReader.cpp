#include "notation/pgnReader.h"

#include "base/cppIoUtils.h"
#include "notation/san.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>

namespace {

constexpr std::string_view BLANKS = " \t\r\n\v\f";
constexpr std::string_view LINE_ENDS = "\r\n";
constexpr std::string_view WORD_ENDS = " \t\r\n\v\f{}()[];$";
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
constexpr std::size_t MAX_QUOTED = 20; // characters of a word in a message
constexpr int MAX_GLYPH = 255;

constexpr std::array<std::string_view, 4> RESULTS = {"1-0", "0-1", "1/2-1/2", "*"};
// The marks that have a glyph, which is the index plus 1.
constexpr std::array<std::string_view, 6> MARKS = {"!", "?", "!!", "??", "!?", "?!"};

template <std::size_t N>
bool isAmong(const std::array<std::string_view, N>& texts, std::string_view text) {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

// The glyph for the marks at the end of a word, 0 if there are none.
int glyphOf(std::string_view word) {
    const std::string_view marks = word.substr(word.find_last_not_of("!?") + 1);
    const auto place = std::find(MARKS.begin(), MARKS.end(), marks);
    return place != MARKS.end() ? static_cast<int>(place - MARKS.begin()) + 1 : 0;
}

std::string quoted(const std::string& word) {
    const bool isLong = word.size() > MAX_QUOTED;
    return '"' + (isLong ? word.substr(0, MAX_QUOTED) + "..." : word) + '"';
}

} // namespace

PgnReader::PgnReader(std::string_view _text) : text(_text) {
    at = text.starts_with(BYTE_ORDER_MARK) ? BYTE_ORDER_MARK.size() : 0;
}

std::optional<PgnGame> PgnReader::next() {
    game = PgnGame();
    present = game.start;
    setUp.clear();
    hasBegun = false;
    isOver = false;
    while (!isOver && !fault && skipBlanks()) {
        readToken();
    }
    if (fault || !hasBegun) {
        return std::nullopt;
    }
    const std::string result = game.getTag("Result");
    if (game.result == "*" && isAmong(RESULTS, result)) {
        game.result = result;
    }
    return std::move(game);
}

// ---- The text ----

void PgnReader::fail(std::size_t place, const std::string& reason) {
    const std::string_view before = text.substr(0, place);
    const auto lines = std::count(before.begin(), before.end(), '\n');
    const std::size_t lineAt = before.find_last_of('\n') + 1; // npos becomes 0
    fault = {static_cast<int>(lines) + 1, static_cast<int>(place - lineAt) + 1, reason};
}

// The first place from `from` on that holds one of `letters`, or the end of the text.
std::size_t PgnReader::findEnd(std::string_view letters, std::size_t from) const {
    return std::min(text.find_first_of(letters, from), text.size());
}

std::size_t PgnReader::findNonBlank(std::size_t from) const {
    return std::min(text.find_first_not_of(BLANKS, from), text.size());
}

bool PgnReader::hasLetter(std::size_t place, char letter) const {
    return place < text.size() && text[place] == letter;
}

// Skips blanks and lines that begin with "%". Returns whether any text is left.
bool PgnReader::skipBlanks() {
    at = findNonBlank(at);
    while (hasLetter(at, '%') && (at == 0 || LINE_ENDS.find(text[at - 1]) != LINE_ENDS.npos)) {
        at = findNonBlank(findEnd(LINE_ENDS, at));
    }
    return at < text.size();
}

// ---- The parts of a game ----

void PgnReader::readToken() {
    switch (text[at]) {
    case '[':
        readTag();
        break;
    case '{':
    case ';':
        readComment();
        break;
    case '(':
        skipVariation();
        break;
    case '$':
        readGlyph();
        break;
    default:
        readWord();
    }
}

void PgnReader::readTag() {
    const std::size_t nameAt = findNonBlank(at + 1);
    const std::size_t nameEnd = findEnd(" \t\r\n\"[]", nameAt);
    const std::string name(text.substr(nameAt, nameEnd - nameAt));
    if (!game.moves.empty() || (name == "Event" && !game.getTag(name).empty())) {
        isOver = true;
        return;
    }
    const std::size_t valueAt = findNonBlank(nameEnd);
    if (name.empty() || !hasLetter(valueAt, '"')) {
        return fail(name.empty() ? nameAt : valueAt, R"(expected a tag such as [Event "name"])");
    }
    std::string value;
    std::size_t place = valueAt + 1;
    while (place < text.size() && text[place] != '"' && text[place] != '\n') {
        const bool isEscaped =
            text[place] == '\\' && (hasLetter(place + 1, '"') || hasLetter(place + 1, '\\'));
        value += text[isEscaped ? place + 1 : place];
        place += isEscaped ? 2 : 1;
    }
    const std::size_t end = findNonBlank(std::min(place + 1, text.size()));
    if (!hasLetter(place, '"')) {
        return fail(place, "expected a quotation mark after the value of the tag " + quoted(name));
    }
    if (!hasLetter(end, ']')) {
        return fail(end, R"(expected "]" after the value of the tag )" + quoted(name));
    }
    at = end + 1;
    addTag(name, value, valueAt + 1);
}

// Adds a tag, whose value begins at `place`.
void PgnReader::addTag(const std::string& name, const std::string& value, std::size_t place) {
    hasBegun = true;
    game.comment.clear(); // it belongs to no game
    game.tags.emplace_back(name, value);
    if (name == "SetUp") {
        setUp = value;
    }
    if (name == "FEN" && setUp != "0") {
        if (const std::string reason = readGameStart(game.start, value); !reason.empty()) {
            return fail(place, "expected a position that can be played: " + reason);
        }
        present = game.start;
    }
}

void PgnReader::readComment() {
    const std::string_view words = takeComment();
    std::string& comment = game.moves.empty() ? game.comment : game.moves.back().comment;
    comment.append(comment.empty() ? "" : " ").append(joined(splitString(std::string(words))));
}

// Skips a comment and returns its text.
std::string_view PgnReader::takeComment() {
    const std::size_t begin = at;
    const bool isLine = text[at] == ';';
    at = findEnd(isLine ? LINE_ENDS : "}", begin);
    const std::string_view words = text.substr(begin + 1, at - begin - 1);
    if (!isLine) {
        if (at == text.size()) {
            fail(begin, R"(expected "}" after the comment that begins here)");
        } else {
            ++at;
        }
    }
    return words;
}

void PgnReader::skipVariation() {
    const std::size_t begin = at;
    std::int64_t depth = 0;
    do {
        if (text[at] == '{' || text[at] == ';') {
            takeComment();
            continue;
        }
        depth += text[at] == '(' ? 1 : text[at] == ')' ? -1 : 0;
        ++at;
    } while (depth > 0 && !fault && skipBlanks());
    if (depth > 0 && !fault) {
        fail(begin, R"-(expected ")" after the variation that begins here)-");
    }
}

void PgnReader::readGlyph() {
    int nag = 0;
    const char* const begin = text.data() + at + 1;
    const auto [end, problem] = std::from_chars(begin, text.data() + text.size(), nag);
    if (problem != std::errc() || nag < 0 || nag > MAX_GLYPH) {
        return fail(at, R"(expected a number from 0 to 255 after "$")");
    }
    at += 1 + static_cast<std::size_t>(end - begin);
    annotate(nag);
}

void PgnReader::readWord() {
    const std::size_t begin = at;
    at = findEnd(WORD_ENDS, begin);
    const std::string word(text.substr(begin, at - begin));
    if (word.empty()) {
        return fail(begin,
                    "expected a move or a result, not " + quoted(std::string(1, text[begin])));
    }
    if (isAmong(RESULTS, word)) {
        game.result = word;
        hasBegun = true;
        isOver = true;
        return;
    }
    const std::string bare = withoutMoveNumber(word);
    if (!bare.empty() && !isMoveMark(bare)) {
        readMove(bare, begin + word.size() - bare.size());
    }
    if (!fault) {
        annotate(glyphOf(bare));
    }
}

void PgnReader::readMove(const std::string& word, std::size_t place) {
    if (setUp == "1" && game.moves.empty() && game.getTag("FEN").empty()) {
        return fail(place, R"(expected the tag "FEN" before the moves, as the tag "SetUp" is "1")");
    }
    std::string reason;
    const std::optional<Move> move = findMove(present.position, word, reason);
    if (!move) {
        return fail(place, "expected a move or a result: " + quoted(word) + ' ' + reason);
    }
    hasBegun = true;
    game.moves.push_back({*move});
    present.play(*move);
}

void PgnReader::annotate(int nag) {
    if (!game.moves.empty() && game.moves.back().nag == 0) {
        game.moves.back().nag = nag;
    }
}
