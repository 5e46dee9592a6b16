#include "kestran-explain/explainTree.h"

#include "explain/searchText.h"
#include "notation/san.h"
#include "support/text.h"

#include <algorithm>
#include <sstream>
#include <vector>

namespace {

constexpr const char* BOLD = "1";
constexpr const char* RED = "31";
constexpr const char* GREEN = "32";
constexpr const char* YELLOW = "33";

constexpr const char* BRANCH = "├─ ";
constexpr const char* LAST_BRANCH = "└─ ";
constexpr const char* TRUNK = "│  ";
constexpr const char* NO_TRUNK = "   ";
constexpr std::size_t LEVEL_WIDTH = 3;   // columns of each of the four
constexpr std::size_t MOVE_COLUMNS = 26; // for branches and move
constexpr std::size_t WINDOW_COLUMNS = 18;
constexpr std::size_t SCORE_COLUMNS = 11;
constexpr std::size_t MIN_TEXT_COLUMNS = 20; // for a reason, also in a narrow terminal

// Blanks after a text of `width` columns up to the next column, at least one.
std::string padding(std::size_t width, std::size_t columns) {
    return std::string(std::max(columns, width + 1) - width, ' ');
}

} // namespace

TreeReport::TreeReport(const WatchedLine& _line, bool _all, bool _colour, std::size_t _width)
    : line(_line), all(_all), colour(_colour), width(_width) {
}

std::string TreeReport::getHead() const {
    std::ostringstream stream;
    stream << "Position: " << line.getFen() << '\n'
           << "Line:     " << lineToSan(line.getPosition(0), line.getMoves(), line.getGamePly(0))
           << '\n'
           << "Each move is followed by the window and the score, in pawns, for the side that\n"
           << "makes the move. A star marks the line.\n";
    return stream.str();
}

std::string TreeReport::getPass(int pass) const {
    std::ostringstream stream;
    const PassReport& report = line.getPass(pass);
    const std::string title =
        "Pass " + std::to_string(pass) + ", depth " + std::to_string(report.depth);
    stream << '\n' << paint(BOLD, title) << ": " << resultText(report.result);
    if (isGood(report) && report.line.varLength > 0) {
        stream << ", " << scoreText(report.line.evaluation) << sideText(line.getPosition(0))
               << " with " << reportedLineText(line, pass);
    }
    stream << '\n';
    printNode(stream, pass, 0, "");
    return stream.str();
}

void TreeReport::printNode(std::ostream& stream, int pass, int ply,
                           const std::string& prefix) const {
    const bool isLeftOut = line.isLeftOut(pass, ply);
    if (line.getNode(pass, ply) != nullptr) {
        const auto shown = line.getRemarkable(pass, ply, all);
        if (const auto standPat = line.getStandPat(pass, ply)) {
            stream << prefix << (shown.empty() ? LAST_BRANCH : BRANCH)
                   << "standing pat raises alfa to " << scoreText(*standPat) << '\n';
        }
        for (const NodeMoveInfo* info : shown) {
            const bool isLast = info == shown.back() && !isLeftOut;
            const std::string trunk = prefix + (isLast ? NO_TRUNK : TRUNK);
            printMove(stream, pass, ply, *info, prefix + (isLast ? LAST_BRANCH : BRANCH), trunk);
            if (line.isLineMove(*info, ply)) {
                printNode(stream, pass, ply + 1, trunk);
            }
        }
    }
    if (isLeftOut) {
        stream << prefix << LAST_BRANCH << leftOutLine(pass, ply) << '\n';
    }
}

// The line's move at a node that did not try it.
std::string TreeReport::leftOutLine(int pass, int ply) const {
    const Move& move = line.getMoves()[at(ply)];
    return paint(BOLD, toNumberedSan(line.getPosition(ply), move, line.getGamePly(ply)) + " *") +
           ' ' + paint(YELLOW, leftOutText(line, pass, ply));
}

void TreeReport::printMove(std::ostream& stream, int pass, int ply, const NodeMoveInfo& info,
                           const std::string& stem, const std::string& trunk) const {
    const bool isLineMove = line.isLineMove(info, ply);
    const std::string move = toNumberedSan(line.getPosition(ply), info.move, line.getGamePly(ply)) +
                             (isLineMove ? " *" : "");
    const std::size_t level = LEVEL_WIDTH * at(ply + 1);
    const std::string window = '(' + scoreText(info.alfa) + ", " + scoreText(info.beta) + ')';
    const std::string score = info.lmfCut ? "no score" : scoreText(info);
    const std::string gap = padding(level + move.size(), MOVE_COLUMNS);
    const std::string numbers = window + padding(window.size(), WINDOW_COLUMNS) + score +
                                padding(score.size(), SCORE_COLUMNS);
    const std::size_t column = level + move.size() + gap.size() + numbers.size();
    stream << stem << (isLineMove ? paint(BOLD, move) : move) << gap << numbers
           << wrap(colourOf(info), reasonOf(pass, ply, info), column, trunk) << '\n';
}

// Why the move ended, with the line after it or the one that refuted it.
std::string TreeReport::reasonOf(int pass, int ply, const NodeMoveInfo& info) const {
    std::string reason = endingText(info.ending, verdictOf(info));
    if (info.lmfCut) {
        return reason;
    }
    if (choiceOf(*line.getNode(pass, ply)) == &info) {
        reason += ", the choice";
    }
    const std::string after = afterText(line, ply, info);
    if (!after.empty()) {
        reason += ", then " + after;
    }
    if (const NodeMoveInfo* refutation = line.getRefutation(pass, ply, info)) {
        reason += ", refuted by " + lineText(line, ply + 1, *refutation);
    }
    return reason;
}

const char* TreeReport::colourOf(const NodeMoveInfo& info) const {
    if (info.lmfCut || verdictOf(info) == Verdict::FAILED_LOW) {
        return RED;
    }
    return verdictOf(info) == Verdict::INSIDE ? GREEN : YELLOW;
}

std::string TreeReport::wrap(const char* code, const std::string& text, std::size_t column,
                             const std::string& trunk) const {
    const std::size_t end = width < column + MIN_TEXT_COLUMNS ? column + MIN_TEXT_COLUMNS : width;
    std::string result;
    std::istringstream lines(wrapText(text, column, end));
    for (std::string part; std::getline(lines, part);) {
        if (!result.empty()) {
            result += '\n' + trunk + std::string(column - countColumns(trunk), ' ');
            part.erase(0, column);
        }
        result += paint(code, part);
    }
    return result;
}

std::string TreeReport::paint(const char* code, const std::string& text) const {
    return colour ? std::string("\x1b[") + code + 'm' + text + "\x1b[0m" : text;
}
