#include "kestran-soak/answer.h"

#include <cctype>
#include <optional>
#include <string_view>

namespace {

const std::string NAME = "id name KESTRAN CHESS " KESTRAN_VERSION;
const std::string CLOSING_START = "info pv";
constexpr std::string_view LAST_START = "bestmove ";

bool isDigit(char letter) {
    return std::isdigit(static_cast<unsigned char>(letter)) != 0;
}

// Takes the digits that `text` begins with; whether there are any.
bool takeDigits(std::string_view& text) {
    const std::size_t before = text.size();
    while (!text.empty() && isDigit(text[0])) {
        text.remove_prefix(1);
    }
    return text.size() < before;
}

// Takes what fits the pattern from the start of `text`; whether it does.
bool takeFitting(std::string_view& text, std::string_view pattern) {
    for (const char wanted : pattern) {
        if (text.starts_with(wanted == '@' ? '-' : wanted)) {
            text.remove_prefix(1);
        } else if (wanted != '#' && wanted != '@') {
            return false;
        }
        if ((wanted == '#' || wanted == '@') && !takeDigits(text)) {
            return false;
        }
    }
    return true;
}

// What stands behind the first of `starts` that the line begins with, nothing if none does.
std::optional<std::string_view> behindStart(std::string_view line,
                                            const std::vector<std::string>& starts) {
    for (const std::string& start : starts) {
        std::string_view rest = line;
        if (takeFitting(rest, start)) {
            return rest;
        }
    }
    return std::nullopt;
}

// The moves of a line, each with a blank before it, which it takes from `rest`.
std::vector<std::string> takeMoves(std::string_view& rest) {
    std::vector<std::string> moves;
    while (rest.starts_with(' ')) {
        const std::string_view word = rest.substr(1, rest.find(' ', 1) - 1);
        if (word.size() < 4 || word.size() > 5 || !isDigit(word[1])) {
            break;
        }
        moves.emplace_back(word);
        rest.remove_prefix(1 + word.size());
    }
    return moves;
}

// The moves of a line of one of these forms. The first one may be illegal if `isFirstFree`.
std::vector<std::string> readLine(const std::string& line, const std::vector<std::string>& starts,
                                  const std::string& end, NaiveBoard board, bool isFirstFree) {
    std::optional<std::string_view> rest = behindStart(line, starts);
    const std::vector<std::string> moves = rest ? takeMoves(*rest) : std::vector<std::string>();
    if (!rest || !takeFitting(*rest, end) || !rest->empty()) {
        throw ProtocolFault("not of its form: \"" + line + '"');
    }
    for (const std::string& move : moves) {
        if (!board.play(move)) {
            if (isFirstFree && &move == &moves.front()) {
                break;
            }
            throw ProtocolFault("illegal move in \"" + line + '"');
        }
    }
    return moves;
}

} // namespace

const Dialect KESTRAN = {{NAME, "id author Bremo Talvik",
                          "option name Hash type spin min 0 max 512 default 192 ", "uciok"},
                         {CLOSING_START},
                         " score cp @ depth # seldepth # nodes # time # nps # ",
                         false};

const Dialect KESTRAN_TESTER = {{NAME + " Tester", "id author Bremo Talvik",
                                 "option name Hash type spin min 0 max 512 default 192 ",
                                 "option name OwnBook type check default false",
                                 "option name Move Overhead type spin min 0 max 5000 default 10 ",
                                 "uciok"},
                                {"info depth # seldepth # score cp @ nodes # nps # time # pv",
                                 "info depth # seldepth # score mate @ nodes # nps # time # pv"},
                                "",
                                true};

const Dialect& dialectOf(const std::string& line) {
    return line == KESTRAN_TESTER.greeting.front() ? KESTRAN_TESTER : KESTRAN;
}

bool isLastOfAnswer(const std::string& line) {
    return line.starts_with(LAST_START);
}

std::string readAnswer(const std::vector<std::string>& lines, const NaiveBoard& board,
                       const Dialect& dialect) {
    if (lines.size() < 2) {
        throw ProtocolFault("no closing line before \"" + lines.back() + '"');
    }
    for (std::size_t i = 0; i + 2 < lines.size(); ++i) {
        readLine(lines[i], dialect.reportStarts, dialect.reportEnd, board, false);
    }
    const std::string& closing = lines[lines.size() - 2];
    const std::vector<std::string> moves =
        dialect.isClosedByReport
            ? readLine(closing, dialect.reportStarts, dialect.reportEnd, board, true)
            : readLine(closing, {CLOSING_START}, "", board, true);
    if (moves.empty() || lines.back() != std::string(LAST_START) + moves.front()) {
        throw ProtocolFault('"' + lines.back() + "\" behind \"" + closing + '"');
    }
    return moves.front();
}
