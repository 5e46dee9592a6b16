// The page about a watched line, and the file that a report is written to.

#include "kestran-explain/explain.h"
#include "kestran-explain/htmlWriter.h"
#include "testing/toolSupport.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

namespace {

int countOf(const std::string& text, const std::string& part) {
    int count = 0;
    for (std::size_t place = 0; (place = text.find(part, place)) != std::string::npos; ++place) {
        ++count;
    }
    return count;
}

TEST(Page, EscapesTextAndAttributes) {
    HtmlWriter html;
    html.add("p", {{"title", "\"<&>"}}, "a <b> & \"c\"");
    html.addEmpty("br");
    EXPECT_EQ(html.getResult(), "<p title=\"&quot;&lt;&amp;&gt;\">a &lt;b&gt; &amp; "
                                "&quot;c&quot;</p><br/>");
}

TEST(Page, HoldsWhatTheTreeHolds) {
    std::vector<std::string> words = {"--moves",      "1. e4 e5 2. Nf3 Nc6 3. Bb5 a6 4. Bxc6 dxc6",
                                      "--line",       "Nxe5 Qd4 c3",
                                      "--depth",      "3",
                                      "--hash",       "1",
                                      "--format=tree"};
    const std::string tree = runBody(explainMain, words).output;
    words.back() = "--format=html";
    const std::string page = runBody(explainMain, words).output;
    // In the tree each move has a window before its score.
    EXPECT_EQ(countOf(page, "<li class=\"move "),
              countOf(tree, "─ ") - countOf(tree, "never tried") - countOf(tree, "standing pat"));
    EXPECT_EQ(countOf(page, "<svg class=\"window\""), countOf(page, "<li class=\"move "));
    EXPECT_EQ(countOf(page, " never tried"), countOf(tree, " never tried"));
    EXPECT_EQ(countOf(page, "role=\"tooltip\""), countOf(tree, "refuted by "));
    EXPECT_GT(countOf(tree, "refuted by "), 0);
    const std::string answer = tree.substr(tree.rfind("\n\n") + 2);
    EXPECT_LT(page.find(answer.substr(0, answer.find('"'))), page.find("<main>"));
    // The line on the board, first its last move.
    const std::string board = page.substr(page.find("<figure>"), page.find("</figure>"));
    EXPECT_LT(board.find(">3</text></g>"), board.find(">1</text></g>"));
    EXPECT_EQ(countOf(page, "://") + countOf(page, "src="), 0); // nothing from outside

    // The board of a refutation shows the refuted move as played, and Black's answer as an arrow.
    const std::size_t tip =
        page.find("aria-label=\"The board after 5. Nxe5, with arrows for 5... Qd4");
    ASSERT_NE(tip, std::string::npos);
    const std::string refutation = page.substr(tip, page.find("</svg>", tip) - tip);
    EXPECT_EQ(countOf(refutation, "href=\"#N\" class=\"white\" x=\"4\" y=\"3\""), 1);
    EXPECT_EQ(countOf(refutation, "href=\"#Q\" class=\"black\" x=\"3\" y=\"0\""), 1);
    EXPECT_EQ(countOf(refutation, "arrow of-black"), 1);
    EXPECT_EQ(countOf(refutation, "arrow of-white"), 0);

    words.emplace_back("--pass=1");
    EXPECT_EQ(countOf(runBody(explainMain, words).output, "<details class=\"pass\""), 1);
}

TEST(Page, GoesToAFileInPlaceOfStandardOutput) {
    const TestFolder folder;
    const std::string path = folder.path + "/report";
    std::vector<std::string> words = {"--line=e4", "--depth=1", "--hash=1"};
    const std::string report = runBody(explainMain, words).output;
    words.insert(words.end(), {"-o", path});
    const ToolRun run = runBody(explainMain, words);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "");
    std::ifstream file(path);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), report);
    expectRefusal(runBody(explainMain, {"--line=e4", "-o", folder.path}), "cannot be written");
    // The name of the file says that it is a page.
    words.back() = folder.path + "/report.html";
    EXPECT_EQ(runBody(explainMain, words).status, 0);
    std::string start;
    std::ifstream(words.back()) >> start;
    EXPECT_EQ(start, "<!DOCTYPE");
}

} // namespace
