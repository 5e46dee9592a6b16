#include "kestran-soak/answer.h"

#include "base/cppIoUtils.h"

#include <cctype>
#include <string_view>

namespace {

constexpr std::string_view LINE_START = "info pv ";
// What stands behind the moves of a report. Each # is a whole number from 0, and @ one that
// may be below 0.
constexpr std::string_view REPORT_END = " score cp @ depth # seldepth # nodes # time # nps # ";
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

bool fits(std::string_view text, std::string_view pattern) {
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
    return text.empty();
}

// The moves of a line whose moves are followed by `end`.
void checkLine(const std::string& line, std::string_view end, NaiveBoard board) {
    const std::size_t length = end.empty() ? line.size() : line.find(" score ");
    if (!line.starts_with(LINE_START) || length == std::string::npos ||
        !fits(std::string_view(line).substr(length), end)) {
        throw ProtocolFault("not of its form: \"" + line + '"');
    }
    std::string again = "info pv";
    for (const std::string& move :
         splitString(line.substr(LINE_START.size(), length - LINE_START.size()))) {
        if (!board.play(move)) {
            throw ProtocolFault("illegal move in \"" + line + '"');
        }
        again += ' ' + move;
    }
    if (again != line.substr(0, length)) {
        throw ProtocolFault("not of its form: \"" + line + '"');
    }
}

} // namespace

const std::array<std::string, 4> GREETING = {
    "id name KESTRAN CHESS " KESTRAN_VERSION, "id author Bremo Talvik",
    "option name Hash type spin min 0 max 512 default 192 ", "uciok"};

bool isLastOfAnswer(const std::string& line) {
    return line.starts_with(LAST_START);
}

std::string readAnswer(const std::vector<std::string>& lines, const NaiveBoard& board) {
    if (lines.size() < 2) {
        throw ProtocolFault("no closing line before \"" + lines.back() + '"');
    }
    for (std::size_t i = 0; i + 2 < lines.size(); ++i) {
        checkLine(lines[i], REPORT_END, board);
    }
    const std::string& closing = lines[lines.size() - 2];
    const std::vector<std::string> words = splitString(closing);
    if (words.size() < 3 || lines.back() != std::string(LAST_START) + words[2]) {
        throw ProtocolFault('"' + lines.back() + "\" behind \"" + closing + '"');
    }
    if (NaiveBoard(board).play(words[2])) {
        checkLine(closing, "", board);
    }
    return words[2];
}
