#include "kestran-explain/htmlTree.h"

#include "board/makeMove.h"
#include "explain/searchText.h"
#include "kestran-explain/boardPicture.h"
#include "kestran-explain/windowBar.h"
#include "notation/san.h"

#include <algorithm>

namespace {

// Moves that the small board of a refutation shows.
constexpr std::size_t REFUTING_MOVES = 3;

// The name of the colour of a move, and a sign for it.
struct Outcome {
    const char* name;
    const char* sign;
};

Outcome outcomeOf(const NodeMoveInfo& info) {
    if (info.lmfCut) {
        return {"cut", "✂"};
    }
    switch (verdictOf(info)) {
    case Verdict::FAILED_LOW:
        return {"low", "▼"};
    case Verdict::INSIDE:
        return {"inside", "◆"};
    case Verdict::FAILED_HIGH:
        return {"high", "▲"};
    }
    return {"", ""};
}

} // namespace

HtmlTree::HtmlTree(HtmlWriter& _html, const WatchedLine& _line, bool _all)
    : html(_html), line(_line), all(_all) {
}

void HtmlTree::addPass(int pass, bool isOpen) {
    const PassReport& report = line.getPass(pass);
    const auto details = isOpen ? html.open("details", {{"class", "pass"}, {"open", ""}})
                                : html.open("details", {{"class", "pass"}});
    {
        const auto summary = html.open("summary");
        html.add("h3", {},
                 "Pass " + std::to_string(pass) + ", depth " + std::to_string(report.depth));
        html.add("span", {{"class", "result"}}, resultText(report.result));
    }
    if (isGood(report) && report.line.varLength > 0) {
        html.add("p", {},
                 scoreText(report.line.evaluation) + sideText(line.getPosition(0)) + " with " +
                     reportedLineText(line, pass));
    }
    addNode(pass, 0);
}

void HtmlTree::addNode(int pass, int ply) {
    const bool isThere = line.getNode(pass, ply) != nullptr;
    const auto moves =
        isThere ? line.getRemarkable(pass, ply, all) : std::vector<const NodeMoveInfo*>();
    const auto standPat = isThere ? line.getStandPat(pass, ply) : std::nullopt;
    const bool isLeftOut = line.isLeftOut(pass, ply);
    if (moves.empty() && !standPat && !isLeftOut) {
        return;
    }
    const auto list = html.open("ul", {{"class", "node"}});
    if (standPat) {
        html.add("li", {{"class", "remark"}},
                 "standing pat raises alfa to " + scoreText(*standPat));
    }
    for (const NodeMoveInfo* info : moves) {
        addMove(pass, ply, *info);
    }
    if (isLeftOut) {
        const auto item = html.open("li", {{"class", "remark"}});
        html.add(
            "strong", {},
            toNumberedSan(line.getPosition(ply), line.getMoves()[at(ply)], line.getGamePly(ply)) +
                " ★");
        html.addText(' ' + leftOutText(line, pass, ply));
    }
}

void HtmlTree::addMove(int pass, int ply, const NodeMoveInfo& info) {
    const bool isLineMove = line.isLineMove(info, ply);
    const Outcome outcome = outcomeOf(info);
    const std::string classes =
        std::string("move ") + outcome.name + (isLineMove ? " of-line" : "");
    const auto item = html.open("li", {{"class", classes}});
    // What follows of the line is seen at once.
    const auto details = isLineMove ? html.open("details", {{"open", ""}}) : html.open("details");
    {
        const auto summary = html.open("summary");
        const std::string move =
            toNumberedSan(line.getPosition(ply), info.move, line.getGamePly(ply));
        html.add("span", {{"class", "name"}}, move + (isLineMove ? " ★" : ""));
        drawWindow(html, info);
        html.add("span", {{"class", "outcome"}},
                 std::string(outcome.sign) + ' ' + endingText(info.ending, verdictOf(info)));
    }
    addMore(pass, ply, info);
    if (isLineMove) {
        addNode(pass, ply + 1);
    }
}

// What the row of the move has no room for.
void HtmlTree::addMore(int pass, int ply, const NodeMoveInfo& info) {
    const auto paragraph = html.open("p", {{"class", "more"}});
    const bool isChoice = choiceOf(*line.getNode(pass, ply)) == &info;
    const std::string after = info.lmfCut ? "" : afterText(line, ply, info);
    const NodeMoveInfo* refutation = line.getRefutation(pass, ply, info);
    if (isChoice) {
        html.addText("The choice of the node. ");
    }
    if (!after.empty()) {
        html.addText("Then " + after + ". ");
    } else if (refutation == nullptr) {
        html.addText("No line is known after it.");
    }
    if (refutation != nullptr) {
        addRefutation(pass, ply, info, *refutation);
    }
}

// A small board appears when the words are pointed at or focused by keyboard.
void HtmlTree::addRefutation(int pass, int ply, const NodeMoveInfo& info,
                             const NodeMoveInfo& refutation) {
    const Position& position = line.getPosition(ply + 1);
    std::vector<Move> moves = movesOf(refutation.principalVariant);
    moves.insert(moves.begin(), refutation.move);
    const std::string text = lineToSan(position, moves, line.getGamePly(ply + 1));
    const std::string id = "board-" + std::to_string(pass) + '-' + std::to_string(ply);
    html.addText("Refuted by ");
    const auto peek = html.open("span", {{"class", "peek"}});
    html.add("button", {{"type", "button"}, {"aria-describedby", id}}, text);
    const auto tip = html.open("span", {{"class", "tip"}, {"role", "tooltip"}, {"id", id}});
    moves.resize(std::min(moves.size(), REFUTING_MOVES));
    drawBoard(html, position, moves,
              "The board after " +
                  toNumberedSan(line.getPosition(ply), info.move, line.getGamePly(ply)) +
                  ", with arrows for " + lineToSan(position, moves, line.getGamePly(ply + 1)));
}
