#include "support/uciLines.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace {

const std::vector<std::string> MODERN_REPORTS = {
    "info depth # seldepth # multipv # score cp @ nodes # nps # hashfull # time # pv%",
    "info depth # seldepth # multipv # score mate @ nodes # nps # hashfull # time # pv%",
    "info depth # currmove% currmovenumber #"};

// Removes the number at the start of `line`. Returns whether there was one.
bool takeNumber(std::string_view& line, std::vector<long long>& numbers) {
    const auto [end, fault] = std::from_chars(line.begin(), line.end(), numbers.emplace_back());
    line.remove_prefix(static_cast<std::size_t>(end - line.begin()));
    return fault != std::errc::invalid_argument;
}

// Removes the moves at the start of `line`.
void takeMoves(std::string_view& line, std::vector<std::string>& moves) {
    while (line.starts_with(' ')) {
        const std::string_view word = line.substr(1, line.find(' ', 1) - 1);
        if (!isMoveText(word)) {
            return;
        }
        moves.emplace_back(word);
        line.remove_prefix(1 + word.size());
    }
}

} // namespace

const UciDialect KESTRAN_DIALECT = {
    {"id author Bremo Talvik", "option name Hash type spin min 0 max 512 default 192 ", "uciok"},
    {"info pv% score cp @ depth # seldepth # nodes # time # nps # "},
    {"info pv%"}};
const UciDialect MODERN_DIALECT = {{}, MODERN_REPORTS, MODERN_REPORTS};
const UciDialect OTHER_DIALECT = {{}, {"info *"}, {}};

const UciDialect& dialectOf(const std::string& nameLine) {
    if (nameLine.starts_with("id name KESTRAN CHESS ")) {
        return KESTRAN_DIALECT;
    }
    return nameLine.starts_with("id name Kestran Modern ") ? MODERN_DIALECT : OTHER_DIALECT;
}

bool isMoveText(std::string_view text) {
    constexpr std::array<std::string_view, 5> LETTERS = {"abcdefgh", "12345678", "abcdefgh",
                                                         "12345678", "qrbn"};
    const auto fits = [](char letter, std::string_view letters) {
        return letters.find(letter) != std::string_view::npos;
    };
    return (text.size() == 4 || text.size() == 5) &&
           std::equal(text.begin(), text.end(), LETTERS.begin(), fits);
}

std::optional<LineParts> matchForm(std::string_view line, std::string_view form) {
    LineParts parts;
    for (const char wanted : form) {
        if (wanted == '*') {
            return parts;
        }
        if (wanted == '%') {
            takeMoves(line, parts.moves);
        } else if (wanted == '#' || wanted == '@') {
            if ((wanted == '#' && line.starts_with('-')) || !takeNumber(line, parts.numbers)) {
                return std::nullopt;
            }
        } else if (line.starts_with(wanted)) {
            line.remove_prefix(1);
        } else {
            return std::nullopt;
        }
    }
    return line.empty() ? std::optional(parts) : std::nullopt;
}

std::string findFault(const std::vector<std::string>& lines, const UciDialect& dialect,
                      const plain::Position& board) {
    const bool hasClosing = !dialect.closing.empty();
    std::vector<std::string> moves; // of the line before the last
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
        const bool isClosing = hasClosing && i + 2 == lines.size();
        std::optional<LineParts> parts;
        for (const std::string& form : isClosing ? dialect.closing : dialect.reports) {
            parts = parts ? parts : matchForm(lines[i], form);
        }
        if (!parts) {
            return "malformed line \"" + lines[i] + '"';
        }
        moves = parts->moves;
        plain::Position after = board;
        if (!std::ranges::all_of(moves, [&](const auto& move) { return after.play(move); })) {
            return "illegal move in \"" + lines[i] + '"';
        }
    }
    const std::string answer = moves.empty() ? "" : "bestmove " + moves.front();
    const std::string ponder = moves.size() < 2 ? "" : answer + " ponder " + moves[1];
    if (hasClosing && lines.back() != answer && lines.back() != ponder) {
        return "no closing line that fits \"" + lines.back() + '"';
    }
    return "";
}
