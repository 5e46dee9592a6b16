// The page that tells what came of a watched line, and the file that it goes to.

#include "kestran-explain/explain.h"
#include "kestran-explain/htmlWriter.h"
#include "kestran-explain/wholeFile.h"
#include "testing/toolSupport.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

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
    EXPECT_LT(page.find(answer.substr(0, answer.size() - 1)), page.find("<main>"));
    // The line on the board, first its last move.
    const std::string board = page.substr(page.find("<figure>"), page.find("</figure>"));
    EXPECT_LT(board.find(">3</text></g>"), board.find(">1</text></g>"));
    EXPECT_EQ(countOf(page, "://") + countOf(page, "src="), 0); // nothing from outside
}

TEST(Page, IsWrittenWholeOrNotAtAll) {
    const fs::path folder = fs::path(testing::TempDir()) / ("page-" + std::to_string(getpid()));
    fs::create_directory(folder);
    const std::string path = folder / "report";
    const std::vector<std::string> words = {"--line=e4", "--depth=1", "--hash=1", "-o", path};
    const ToolRun run = runBody(explainMain, words);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "");
    const auto size = fs::file_size(path);
    EXPECT_GT(size, 0U);

    // A file that grows beyond its limit cannot be written; the old one stays, and nothing else.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit none = {size, limit.rlim_max};
    setrlimit(RLIMIT_FSIZE, &none);
    const std::string fault = WholeFile(path).write(std::string(size + 1, 'x'));
    setrlimit(RLIMIT_FSIZE, &limit);
    EXPECT_NE(fault.find("cannot write " + path), std::string::npos) << fault;
    EXPECT_EQ(fs::file_size(path), size);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);

    for (const std::string& bad :
         {folder.string(), path + "/page", (folder / "none/page").string(), std::string()}) {
        expectRefusal(runBody(explainMain, {"--line=e4", "-o", bad}), "cannot write ");
    }
    EXPECT_EQ(WholeFile("/dev/null").write("text"), "");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    fs::remove_all(folder);
}

} // namespace
