#include "kestran-explain/explainTree.h"

#include "board/makeMove.h"
#include "kestran-explain/searchText.h"
#include "notation/fen.h"
#include "support/san.h"

#include <algorithm>
#include <ostream>
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

// Blanks behind a text of `width` columns up to the next column, at least one.
std::string padding(std::size_t width, std::size_t columns) {
    return std::string(std::max(columns, width + 1) - width, ' ');
}

} // namespace

TreeReport::TreeReport(const WatchedLine& _line, bool _all, bool _colour, std::ostream& _stream)
    : line(_line), all(_all), colour(_colour), stream(_stream) {
}

void TreeReport::print() const {
    stream << "Position: " << getFen(line.getPosition(0)) << '\n'
           << "Line:     " << lineToSan(line.getPosition(0), line.getMoves()) << '\n'
           << "Behind each move stand the window and the score, in pawns, for the side that\n"
           << "makes the move. A star marks the line.\n";
    for (int pass = 0; pass < line.getPassCount(); ++pass) {
        printPass(pass);
    }
}

void TreeReport::printPass(int pass) const {
    const std::string title =
        "Pass " + std::to_string(pass) + ", depth " + std::to_string(line.getPassDepth(pass));
    stream << '\n' << paint(BOLD, title) << ": " << resultText(line.getPass(pass).passResult);
    const Node* root = line.getNode(pass, 0);
    if (root == nullptr) {
        stream << '\n'
               << LAST_BRANCH << "no move was tried: " << endingText(MoveEnding::CLOCK) << '\n';
        return;
    }
    if (const NodeMoveInfo* choice = choiceOf(*root)) {
        stream << ", " << scoreText(*choice) << sideText(line.getPosition(0)) << " with "
               << lineText(line, 0, *choice);
    }
    stream << '\n';
    printNode(pass, 0, "");
}

void TreeReport::printNode(int pass, int ply, const std::string& prefix) const {
    const Node& node = *line.getNode(pass, ply);
    std::vector<const NodeMoveInfo*> shown;
    for (const NodeMoveInfo& info : node.nodeMoveInfos) {
        const bool isRemarkable = !info.lmfCut && verdictOf(info) != Verdict::FAILED_LOW;
        if (all || isRemarkable || line.isLineMove(info, ply)) {
            shown.push_back(&info);
        }
    }
    if (const auto standPat = line.getStandPat(pass, ply)) {
        stream << prefix << (shown.empty() ? LAST_BRANCH : BRANCH) << "standing pat raises alfa to "
               << scoreText(*standPat) << '\n';
    }
    const bool isUnreached = ply < line.getLength() && line.getLineMove(pass, ply) == nullptr;
    for (const NodeMoveInfo* info : shown) {
        const bool isLast = info == shown.back() && !isUnreached;
        printMove(pass, ply, *info, prefix + (isLast ? LAST_BRANCH : BRANCH));
        if (line.isLineMove(*info, ply) && line.getNode(pass, ply + 1) != nullptr) {
            printNode(pass, ply + 1, prefix + (isLast ? NO_TRUNK : TRUNK));
        }
    }
    if (isUnreached) {
        const Move& move = line.getMoves()[at(ply)];
        stream << prefix << LAST_BRANCH
               << paint(BOLD, toNumberedSan(line.getPosition(ply), move, ply) + " *") << ' '
               << paint(YELLOW, "never tried, as the node was cut off before") << '\n';
    }
}

void TreeReport::printMove(int pass, int ply, const NodeMoveInfo& info,
                           const std::string& stem) const {
    const bool isLineMove = line.isLineMove(info, ply);
    const std::string move =
        toNumberedSan(line.getPosition(ply), info.move, ply) + (isLineMove ? " *" : "");
    const std::size_t width = LEVEL_WIDTH * at(ply + 1) + move.size();
    const std::string window = '(' + scoreText(info.alfa) + ", " + scoreText(info.beta) + ')';
    const std::string score = info.lmfCut ? "no score" : scoreText(info);
    stream << stem << (isLineMove ? paint(BOLD, move) : move) << padding(width, MOVE_COLUMNS)
           << window << padding(window.size(), WINDOW_COLUMNS) << score
           << padding(score.size(), SCORE_COLUMNS)
           << paint(colourOf(info), reasonOf(pass, ply, info)) << '\n';
}

// Why the move ended, with the line behind it or the one that refuted it.
std::string TreeReport::reasonOf(int pass, int ply, const NodeMoveInfo& info) const {
    const Verdict verdict = verdictOf(info);
    std::string reason = endingText(info.ending, verdict);
    if (info.lmfCut) {
        return reason;
    }
    if (choiceOf(*line.getNode(pass, ply)) == &info) {
        reason += ", the choice";
    }
    const std::vector<Move> behind = movesOf(info.principalVariant);
    if (!behind.empty()) {
        const Position after = positionAfter(line.getPosition(ply), info.move);
        reason += ", then " + lineToSan(after, behind, ply + 1);
    }
    const Node* child = line.isLineMove(info, ply) ? line.getNode(pass, ply + 1) : nullptr;
    const NodeMoveInfo* refutation = child != nullptr ? choiceOf(*child) : nullptr;
    if (verdict == Verdict::FAILED_LOW && refutation != nullptr) {
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

std::string TreeReport::paint(const char* code, const std::string& text) const {
    return colour ? std::string("\x1b[") + code + 'm' + text + "\x1b[0m" : text;
}
