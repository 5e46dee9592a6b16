// The page with an embedded search, and the files that reports are written to.

#include "kestran-explain/explain.h"
#include "kestran-explain/webPage.h"
#include "support/gameInput.h"
#include "support/json.h"
#include "testing/toolSupport.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

namespace {

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Page, HoldsTheSearchAndItsAnswerAsJson) {
    const auto config = EngineConfig::getProdConfig();
    config->hashTableSize = 1 << 16;
    const NumberedGame game = readGame({}, "1. e4 e5 2. Nf3 Nc6 3. Bb5 a6 4. Bxc6 dxc6");
    Explain explain;
    const auto passes =
        watchSearch(*makeSearch(*config), depthRequest(game, 3),
                    readMoves(game.position, "Nxe5 Qd4", "the line"), explain, nullptr);
    const WatchedLine line(game, explain, passes);
    Answer answer = answerLine(*config, game, line, [] { return nullptr; });
    answer.verdict += "</script>"; // must not end the element

    const std::string start = R"(<script type="application/json" id="search">)";
    const std::string page =
        withSearch("<p>" + start + "null</script></p>", embeddedSearch(line, answer, 3, 16));
    ASSERT_TRUE(page.starts_with("<p>" + start));
    const std::size_t end = page.find("</script>");
    ASSERT_EQ(page.substr(end), "</script></p>");
    const Json search = Json::parse(page.substr(3 + start.size(), end - 3 - start.size()));
    EXPECT_EQ(search["fen"], getWholeFen(game));
    EXPECT_EQ(search["line"][1]["san"], "Qd4");
    EXPECT_EQ(search["depth"], 3);
    EXPECT_EQ(search["hash"], 16);
    ASSERT_EQ(search["passes"].size(), passes.size());
    EXPECT_EQ(search["passes"].back()["nodes"], passes.back().allNodes);
    EXPECT_EQ(search["answer"]["verdict"], answer.verdict);
    EXPECT_EQ(search["answer"]["ply"], answer.node);
    EXPECT_FALSE(search["answer"]["refutation"].empty());
    EXPECT_THROW(withSearch("<p></p>", "{}"), std::runtime_error);
}

TEST(Page, IsWrittenIfTheProgramContainsIt) {
    const TestFolder folder;
    for (const std::string& path : {folder.path + "/a.html", folder.path + "/a.htm"}) {
        const ToolRun run =
            runBody(explainMain, {"--line=e4", "--depth=1", "--hash=1", "-o", path});
        if (WEB_PAGE.empty()) {
            expectRefusal(run, "built without the page");
            continue;
        }
        EXPECT_EQ(run.status, 0);
        EXPECT_NE(readFile(path).find("\"depth\":1,\"hash\":1,"), std::string::npos);
    }
}

TEST(Files, HoldWhatWouldGoToStandardOutput) {
    const TestFolder folder;
    const std::string path = folder.path + "/report.html";
    for (const char* format : {"--format=plain", "--format=tree", "--json"}) { // all but a page
        std::vector<std::string> words = {"--line=e4", "--depth=1", "--hash=1", format};
        const std::string report = runBody(explainMain, words).output;
        words.insert(words.end(), {"-o", path});
        const ToolRun run = runBody(explainMain, words);
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(readFile(path), report);
    }
    expectRefusal(runBody(explainMain, {"--line=e4", "-o", folder.path}), "cannot be written");
}

TEST(Files, HoldTheRecordOfEachPass) {
    const TestFolder folder;
    const std::string path = folder.path + "/record";
    const ToolRun run =
        runBody(explainMain, {"--line=e4", "--depth=2", "--hash=1", "--json", "--record", path});
    EXPECT_EQ(run.status, 0);
    const std::string bytes = readFile(path);
    std::size_t place = 0;
    const Json report = Json::parse(run.output);
    for (const Json& pass : report["passes"]) {
        const auto nodes = pass["nodes"].get<std::size_t>();
        // A header, which begins with the number of records and the depth.
        EXPECT_EQ(static_cast<unsigned char>(bytes.at(place)), nodes % 256);
        EXPECT_EQ(bytes.at(place + 4), pass["depth"].get<int>());
        place += 20 * (1 + nodes);
    }
    EXPECT_EQ(bytes.size(), place);
}

} // namespace
