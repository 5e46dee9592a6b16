#include "kestran-explain/htmlPage.h"

#include "explain/searchText.h"
#include "kestran-explain/boardPicture.h"
#include "kestran-explain/htmlTree.h"
#include "kestran-explain/htmlWriter.h"
#include "kestran-explain/pageParts.h"
#include "kestran-explain/passChart.h"
#include "notation/san.h"

namespace {

// Nothing is fetched from anywhere, whatever the text of the page may say.
constexpr const char* POLICY =
    "default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'";

class Page {
public:
    Page(const WatchedLine& _line, const PageOptions& _options)
        : line(_line), options(_options), pass(line.getLastGoodPass()),
          moves(lineToSan(line.getPosition(0), line.getMoves(), line.getGamePly(0))) {}

    std::string make();

private:
    void addHead(const std::string& question);
    void addAnswer(const std::string& question);
    void addBoard();
    void addPasses();
    void addTable();
    void addTree();

    const WatchedLine& line;
    const PageOptions& options;
    const int pass; // the one that is answered for
    const std::string moves;
    HtmlWriter html;
};

std::string Page::make() {
    const Fate::Kind fate = line.getFate(pass).kind;
    const bool wasPlayed = fate == Fate::FOLLOWED || fate == Fate::CUT_SHORT;
    const std::string question = (wasPlayed ? "Why " : "Why not ") + moves + '?';
    html.addVerbatim("<!DOCTYPE html>\n");
    {
        const auto root = html.open("html", {{"lang", "en"}});
        addHead(question);
        const auto body = html.open("body");
        html.add("a", {{"class", "skip"}, {"href", "#tree"}}, "Skip to the tree");
        html.addVerbatim(PAGE_PIECES);
        addAnswer(question);
        {
            const auto main = html.open("main");
            addBoard();
            addPasses();
            addTree();
        }
        html.add("footer", {}, "Made by kestran-explain, of Kestran Chess.");
        const auto script = html.open("script");
        html.addVerbatim(PAGE_SCRIPT);
    }
    html.addVerbatim("\n");
    return html.getResult();
}

void Page::addHead(const std::string& question) {
    const auto head = html.open("head");
    html.addEmpty("meta", {{"charset", "utf-8"}});
    html.addEmpty("meta", {{"http-equiv", "Content-Security-Policy"}, {"content", POLICY}});
    html.addEmpty("meta",
                  {{"name", "viewport"}, {"content", "width=device-width, initial-scale=1"}});
    html.addEmpty("meta", {{"name", "color-scheme"}, {"content", "light dark"}});
    html.add("title", {}, question + " – kestran-explain");
    const auto style = html.open("style");
    html.addVerbatim(PAGE_STYLE);
}

void Page::addAnswer(const std::string& question) {
    const auto header = html.open("header");
    html.add("h1", {}, question);
    html.add("p", {{"class", "answer"}}, options.answer);
    if (!options.book.empty()) {
        html.add("p", {{"class", "book"}}, options.book);
    }
}

void Page::addBoard() {
    const auto section = html.open("section", {{"class", "line"}, {"aria-labelledby", "line"}});
    html.add("h2", {{"id", "line"}}, "The line");
    const auto figure = html.open("figure");
    const Position& position = line.getPosition(0);
    drawBoard(html, position, line.getMoves(),
              "The board. " + piecesText(position) + ". Arrows for " + moves + '.');
    const auto caption = html.open("figcaption");
    html.add("p", {{"class", "moves"}}, moves);
    html.add("p", {}, position.colorToMove == WHITE ? "White to move." : "Black to move.");
    html.add("code", {}, line.getFen());
}

void Page::addPasses() {
    const auto section = html.open("section", {{"class", "passes"}, {"aria-labelledby", "passes"}});
    html.add("h2", {{"id", "passes"}}, "The passes");
    html.add("p", {},
             "Each pass goes one ply deeper, in a window around the score of the last one. A pass "
             "whose score lies outside is repeated; an arrow head then points to where the true "
             "score lies. The columns are the moves that the pass played.");
    drawPasses(html, line);
    addTable();
}

void Page::addTable() {
    const auto frame = html.open("div", {{"class", "scroll"},
                                         {"role", "region"},
                                         {"aria-label", "Table of the passes"},
                                         {"tabindex", "0"}});
    const auto table = html.open("table");
    {
        const auto head = html.open("thead");
        const auto row = html.open("tr");
        for (const char* title : {"Pass", "Depth", "Score", "Nodes", "Result", "Line"}) {
            html.add("th", {{"scope", "col"}}, title);
        }
    }
    const auto body = html.open("tbody");
    for (int i = 0; i < line.getPassCount(); ++i) {
        const PassReport& report = line.getPass(i);
        const std::string bound = isGood(report)                    ? ""
                                  : report.result == IdaNS::FAILLOW ? "<= "
                                                                    : ">= ";
        const auto row = html.open("tr");
        html.add("th", {{"scope", "row"}}, std::to_string(i));
        html.add("td", {}, std::to_string(report.depth));
        html.add("td", {}, bound + scoreText(report.line.evaluation));
        html.add("td", {}, countText(report.nodes));
        html.add("td", {}, resultText(report.result));
        html.add("td", {}, isGood(report) ? reportedLineText(line, i) : "");
    }
}

void Page::addTree() {
    const auto section = html.open("section", {{"class", "tree"}, {"aria-labelledby", "tree"}});
    html.add("h2", {{"id", "tree"}, {"tabindex", "-1"}}, "The tree along the line");
    html.add(
        "p", {},
        "A star marks the line. Each bar is the window of the node, from alfa to beta, with the "
        "score of the move in it or beside it, in pawns, for the side that makes the move. An "
        "arrow head is a bound, and points to where the true score lies.");
    // Only where the script runs, which shows it.
    {
        const auto tools = html.open("p", {{"class", "tools"}, {"hidden", ""}});
        html.add("button", {{"type", "button"}, {"data-open", "all"}}, "Open all");
        html.addText(" ");
        html.add("button", {{"type", "button"}, {"data-open", "none"}}, "Close all");
    }
    HtmlTree tree(html, line, options.all);
    for (int i = 0; i < line.getPassCount(); ++i) {
        if (!options.pass || options.pass == i) {
            tree.addPass(i, i == options.pass.value_or(pass));
        }
    }
}

} // namespace

std::string makePage(const WatchedLine& line, const PageOptions& options) {
    return Page(line, options).make();
}
