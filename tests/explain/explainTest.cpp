// Watching a search along a line, and telling what came of it.

#include "kestran-explain/explain.h"
#include "explain/lineAnswer.h"
#include "explain/searchText.h"
#include "explain/watchedLine.h"
#include "kestran-bench/bench.h"
#include "kestran-explain/reportLength.h"
#include "search/ida.h"
#include "search/score.h"
#include "support/gameInput.h"
#include "support/json.h"
#include "support/text.h"
#include "testing/searchSupport.h"
#include "testing/toolSupport.h"

#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <pty.h>
#include <stdexcept>
#include <sys/wait.h>
#include <tuple>
#include <unistd.h>

namespace {

// An Explain that watches a line from the start position, fed by hand with the events of a search.
class Watched {
public:
    explicit Watched(const std::string& line) : game(readGame({}, "")), positions{game.position} {
        const std::vector<Move> moves = readMoves(game.position, line, "the line");
        Variant variant;
        variant.varLength = static_cast<int>(moves.size());
        for (int i = 0; i < variant.varLength; ++i) {
            variant.get(i) = {moves[at(i)], false, false, false};
        }
        explain.setVariant(game.position, variant);
    }

    void doMove(const std::string& text) {
        path.push_back(moveOf(positions.back(), text));
        positions.push_back(positionAfter(positions.back(), path.back()));
        explain.doMove(path.back());
    }
    void finish(int alfa, int beta, int score, MoveEnding ending = MoveEnding::SEARCHED) {
        Variant variant;
        variant.clear(score);
        explain.explainTreeGenMove(alfa, beta, variant, path.back(), ending);
        path.pop_back();
        positions.pop_back();
    }

    std::size_t countMoves(std::size_t node) const {
        const auto& nodes = explain.getData().back().nodes;
        return node < nodes.size() ? nodes[node].nodeMoveInfos.size() : 0;
    }
    std::string report(bool all) const {
        std::ostringstream stream;
        explain.explainAll(all, stream);
        return stream.str();
    }

    const NumberedGame game;
    std::vector<Position> positions; // along the search's path
    std::vector<Move> path;
    Explain explain;
};

TEST(Explain, RecordsNothingBeforeItHasALine) {
    Explain explain;
    EXPECT_FALSE(explain.preciselyInVariant());
    const Position start = positionOf(START_FEN);
    const Move move = moveOf(start, "e2e4");
    explain.doMove(move);
    EXPECT_FALSE(explain.inVariant());
    EXPECT_TRUE(explain.getData().back().nodes.empty());
    // The depth has moved all the same, and a record that was never begun is not completed.
    explain.setVariant(start, Variant());
    EXPECT_TRUE(explain.inVariant());
    EXPECT_FALSE(explain.preciselyInVariant());
    explain.explainTreeGenMove(0, 1, Variant(), move, MoveEnding::SEARCHED);
    EXPECT_TRUE(explain.preciselyInVariant());
}

TEST(Explain, RecordsTheLineAndOneMoveOffIt) {
    Watched watched("e2e4 e7e5 g1f3");
    watched.doMove("d2d4"); // off the line at the root
    watched.doMove("e7e5"); // deeper off it, though it looks like the line's move
    EXPECT_FALSE(watched.explain.inVariant());
    watched.finish(0, 0, 0);
    watched.finish(0, 100, 10);
    EXPECT_EQ(watched.countMoves(1), 0U);
    for (const char* move : {"e2e4", "e7e5", "b1c3"}) {
        EXPECT_TRUE(watched.explain.preciselyInVariant());
        watched.doMove(move);
        EXPECT_TRUE(watched.explain.inVariant());
    }
    watched.doMove("b8c6");
    EXPECT_FALSE(watched.explain.inVariant());
    EXPECT_EQ(watched.countMoves(0), 2U);
    EXPECT_EQ(watched.countMoves(2), 1U);
    EXPECT_EQ(watched.countMoves(3), 0U);
    for (int i = 0; i < 4; ++i) {
        watched.finish(0, 100, 20);
    }

    // The next pass enters the line anew, to its end and one move further.
    watched.explain.explainEndTreePass(IdaNS::OK);
    for (const char* move : {"e2e4", "e7e5", "g1f3", "b8c6"}) {
        watched.doMove(move);
    }
    const Node& node = watched.explain.getData().back().nodes.at(3);
    EXPECT_EQ(node.depth, 3);
    EXPECT_EQ(textsOf(node.variantSoFar), (std::vector<std::string>{"e2e4", "e7e5", "g1f3"}));
    EXPECT_EQ(node.position, getFen(positionAfterMoves("e2e4 e7e5 g1f3")));
}

TEST(Explain, WatchesALineOfTheGreatestLength) {
    std::string line = "g1f3 g8f6 f3g1";
    for (int i = 0; i < 4; ++i) {
        line += " f6g8 g1f3 g8f6 f3g1";
    }
    EXPECT_EQ(runBody(explainMain, {"--line", line, "--depth=1", "--hash=1"}).status, 0);
    Watched watched(line);
    for (std::istringstream stream(line + " e7e5"); stream >> line;) {
        watched.doMove(line);
    }
    EXPECT_EQ(watched.explain.getData().back().nodes.size(), at(Explain::POSITION_LENGTH));
}

TEST(Explain, ReportsWhatRaisedAlfaOrWasRemarkedUpon) {
    Watched watched("e2e4 e7e5");
    watched.doMove("d2d4");
    watched.finish(-100, 100, -100, MoveEnding::TABLE);
    watched.doMove("c2c4");
    watched.finish(-100, 100, 5, MoveEnding::LMF_CUT);
    watched.doMove("e2e4");
    watched.doMove("c7c5");
    watched.explain.getLastString() = "first\nsecond";
    watched.finish(-100, -5, -100);
    const std::string some = watched.report(false); // before the pass has ended
    EXPECT_EQ(some, " pass 0 not finished \n");
    watched.finish(5, 100, 60);
    watched.explain.explainEndTreePass(IdaNS::FAILHIGH);

    const std::string low = "         move pD2-D4 useTableEntryBool\n"
                            "         (alpha, beta) = (-100, 100)\n"
                            "         principalVariant: Evaluation : -100\n\n";
    std::string report = watched.report(true);
    const std::size_t place = report.find(low + "         move pC2-C4 lmfCut\n");
    ASSERT_NE(place, std::string::npos) << report;
    EXPECT_NE(report.find("             principalVariant: Evaluation : -100\n"
                          "             Evaluation:\n"
                          "              first\n"
                          "              second\n"
                          " pass 1 not finished \n"),
              std::string::npos);
    testing::internal::CaptureStdout();
    watched.explain.explainAll(true);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), report);
    EXPECT_EQ(watched.report(false), report.erase(place, low.size()));
}

// What no finished search shows at its last pass: the line's move was never tried.
TEST(Explain, NamesTheMoveThatKeptTheLineFromBeingReached) {
    Watched watched("e2e4 e7e5");
    watched.doMove("e2e4");
    watched.doMove("c7c5");
    watched.finish(-10, 10, 10);
    watched.finish(-10, 10, -5);
    watched.doMove("d2d4");
    watched.finish(-5, 10, 0, MoveEnding::LMF_CUT); // what lmf cuts has no score, and is no choice
    watched.explain.explainEndTreePass(IdaNS::OK);
    EngineConfig config;
    // The last pass gave only a bound.
    watched.explain.explainEndTreePass(IdaNS::FAILLOW);
    const std::vector<PassReport> passes = {{1, IdaNS::OK, Variant(), 0},
                                            {2, IdaNS::FAILLOW, Variant(), 0}};
    const WatchedLine line(watched.game, watched.explain, passes);
    EXPECT_EQ(
        answerLine(config, watched.game, line, [] { return nullptr; }).getText(),
        "After 1. e4 it never tries 1... e5. 1... c5 (+0.01) was tried before and is enough to "
        "refute 1. e4. This holds for pass 0 (depth 1), the last good one. Scores are for "
        "Black.");
}

// ---- The watched search is the one that plays ----

TEST(WatchedSearch, CountsScoresAndPlaysAsTheEngineDoes) {
#ifdef KESTRAN_SLOW_BUILD
    constexpr int MAX_DEPTH = 2;
#else
    constexpr int MAX_DEPTH = 4;
#endif
    const auto config = EngineConfig::getProdConfig();
    config->hashTableSize = 1 << 16;
    for (const BenchPosition& bench : getBenchPositions()) {
        const NumberedGame game = readGame({bench.fen}, "");
        const int depth = std::min(bench.depth, MAX_DEPTH);
        const auto ida = makeSearch(*config);
        Reports played;
        ida->setInfoListener(&played);
        const Variant variant = ida->generateTree(requestFor(game, limitsOf(depth))).line;

        // Watch the line of play, so that as much as can be is recorded.
        std::vector<Move> line = movesOf(variant);
        line.resize(std::min<std::size_t>(line.size(), Explain::MAX_LINE));
        Explain explain;
        std::int64_t nodes = 0;
        auto info = played.infos.begin();
        for (const PassReport& pass :
             watchSearch(*makeSearch(*config), depthRequest(game, depth), line, explain, nullptr)) {
            nodes += pass.nodes;
            EXPECT_EQ(pass.allNodes, nodes);
            if (isGood(pass)) {
                ASSERT_NE(info, played.infos.end()) << bench.fen;
                EXPECT_EQ(pass.depth, info->depth);
                EXPECT_EQ(nodes, info->nodesSearched) << bench.fen;
                EXPECT_EQ(variantToString(pass.line), variantToString(info->pv)) << bench.fen;
                ++info;
            }
        }
        EXPECT_EQ(info, played.infos.end()) << bench.fen;
        EXPECT_FALSE(explain.getData().front().nodes.empty());
    }
}

// ---- The tool ----

std::string readData(const std::string& name) {
    std::ifstream file(KESTRAN_TEST_DATA "/explain/" + name);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(ExplainTool, PrintsTheRecordOrATree) {
    std::vector<std::string> words = {"6k1/5ppp/8/8/8/8/8/R3K2R w K - 0 1", "--hash=1",
                                      "--line=a1a7 g8f8 h1h7"};
    EXPECT_EQ(runBody(explainMain, words).output, readData("plain.txt"));
    words.emplace_back("--all");
    EXPECT_NE(runBody(explainMain, words).output.find("  move KE1-F2\n"), std::string::npos);
    words.back() = "--format=tree";
    EXPECT_EQ(runBody(explainMain, words).output, readData("tree.txt"));
    words.emplace_back("--all");
    EXPECT_NE(runBody(explainMain, words).output.find("├─ 1. Kf2"), std::string::npos);
    std::string trees;
    for (const auto& [fen, line] : // of Black, and with a pass that failed low
         {std::pair("r1bqkbnr/pppp1ppp/2n5/4p3/2B1P3/5Q2/PPPP1PPP/RNB1K1NR b KQkq - 3 3",
                    "Bc5 Qxf7"),
          {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", "Qxf6 hxg2"}}) {
        trees +=
            runBody(explainMain, {fen, "--line", line, "--depth=2", "--format=tree", "--hash=1"})
                .output;
    }
    EXPECT_EQ(trees, readData("left.txt"));
}

// Three lines a case: "FEN|game|line|depth", something that the tree shows, and a part of
// the sentence at its end.
TEST(ExplainTool, SaysWhyMovesEndAndWhereTheLineWasLeft) {
    std::istringstream cases(readData("cases.txt"));
    int count = 0;
    for (std::string fen, game, line, depth, shown, answer;
         std::getline(cases, fen, '|') && std::getline(cases, game, '|') &&
         std::getline(cases, line, '|') && std::getline(cases, depth) &&
         std::getline(cases, shown) && std::getline(cases, answer);
         ++count) {
        const std::string text =
            runBody(explainMain, {fen, "--moves", game, "--line", line, "--depth", depth,
                                  "--format=tree", "--hash", "1"})
                .output;
        const std::size_t sentence = text.rfind("\n\n");
        EXPECT_LT(text.find(shown), sentence) << shown << '\n' << text;
        EXPECT_NE(text.find(answer, sentence), std::string::npos) << answer << '\n' << text;
    }
    EXPECT_EQ(count, 18);
}

// Without quiescence depth 1 sees no answer to a capture. The last of equal names counts.
TEST(ExplainTool, ChangesSettingsOfTheEngine) {
    const auto answer = [](std::vector<std::string> words) {
        words.insert(words.end(), {"4k3/2p5/3p4/8/8/8/3Q4/4K3 w - - 0 1", "--line=Qxd6",
                                   "--depth=1", "--hash=1", "--format=tree"});
        return runBody(explainMain, words).output;
    };
    EXPECT_NE(answer({}).find("to 1. Qxd6 ("), std::string::npos);
    const std::string blind = answer({"--set", "QuiscenceMaxDepth=0"});
    EXPECT_NE(blind.find("\nIt prefers 1. Qxd6 ("), std::string::npos) << blind;
    EXPECT_EQ(answer({"--set=QuiscenceMaxDepth=0", "--set", "QuiscenceMaxDepth=10"}), answer({}));
}

TEST(ExplainTool, PrintsJson) {
    const auto jsonOf = [](std::vector<std::string> words) {
        words.insert(words.end(), {"--hash=1", "--depth=2", "--line=d4 e5", "--json"});
        return Json::parse(runBody(explainMain, words).output);
    };
    const Json json = jsonOf({});
    EXPECT_EQ(json["schema"], 1);
    EXPECT_EQ(json["fen"], START_FEN);
    EXPECT_EQ(json["line"], Json::array({"d2d4", "e7e5"}));
    EXPECT_TRUE(json["answer"].get<std::string>().starts_with("After 1. d4 it prefers "));
    EXPECT_EQ(json["book"][0], "d2d4");
    ASSERT_EQ(json["passes"].size(), 2U);
    const Json& root = json["passes"][0]["tree"][0];
    EXPECT_EQ(root["moves"].size(), 6U);
    EXPECT_TRUE(root["moves"][0]["alfa"].is_null()) << "an open window";
    EXPECT_TRUE(root["moves"][1]["beta"].is_null());
    EXPECT_EQ(root["moves"][1]["alfa"], root["moves"][0]["score"]);
    EXPECT_TRUE(root["moves"][5]["isOfLine"]);
    EXPECT_TRUE(root["moves"][5]["isChoice"]);
    EXPECT_FALSE(root["moves"][4]["isChoice"]);
    EXPECT_FALSE(root["moves"][4]["isOfLine"]);
    EXPECT_EQ(json["passes"][0]["tree"][1]["standPat"], -32);
    EXPECT_FALSE(root["moves"][5]["line"].empty());
    EXPECT_EQ(json["passes"][1]["pass"], 1);
    EXPECT_EQ(json["passes"][1]["line"][0], "d2d4");
    EXPECT_FALSE(root["moves"][1]["isBound"]);
    EXPECT_TRUE(json["passes"][1]["tree"][1]["moves"][1]["isBound"]);
    const auto passesOf = [](const std::string& fen, const std::string& line) {
        const std::vector<std::string> words = {fen, line, "--depth=2", "--hash=1", "--json"};
        return Json::parse(runBody(explainMain, words).output)["passes"];
    };
    const Json failed = passesOf(
        "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", "--line=Qxf6")[1];
    EXPECT_EQ(failed["result"], "failed low, to be repeated");
    EXPECT_FALSE(failed.contains("score"));
    EXPECT_EQ(passesOf("7k/8/6K1/8/8/8/8/R7 b - -", "--line=Kg8")[0]["mate"], -1);
    const Json cut = passesOf("7k/5Q2/8/6K1/8/8/8/8 w - -", "--line=Kg6")[1]["tree"][0]["moves"];
    EXPECT_EQ(cut.back()["ending"], "cut by lmf");
    EXPECT_FALSE(cut.back().contains("score"));
    const Json one = jsonOf({"--pass=1", "--all"});
    ASSERT_EQ(one["passes"].size(), 1U);
    EXPECT_EQ(one["passes"][0]["depth"], 2);
    EXPECT_EQ(one["passes"][0]["tree"][0]["moves"].size(), 20U);
}

TEST(ExplainTool, FindsALineOfItsOwnAndKeepsTheReportShort) {
    const std::vector<std::string> words = {"--hash=1", "--depth=3", "--format=tree"};
    const auto with = [&](std::vector<std::string> more) {
        more.insert(more.end(), words.begin(), words.end());
        return runBody(explainMain, more).output;
    };
    const std::string whole = with({});
    EXPECT_NE(whole.find("Line:     1. e4 e5 2. d4 exd4 3. Qxd4 d5\n"), std::string::npos) << whole;
    EXPECT_NE(whole.find("\nIn play it would not search here: its book has d4, Nf3, e4, c4.\n"),
              std::string::npos);
    // One pass is a part of the whole, and a long time no limit.
    const std::string second = with({"--pass=1", "--time=1000"});
    const std::string title = "\nPass 1, depth 2";
    const std::size_t end = second.find("\n\nIt prefers");
    ASSERT_NE(whole.find(second.substr(second.find(title), end - second.find(title))),
              std::string::npos);
    EXPECT_EQ(second.find("Pass 2"), std::string::npos);
    EXPECT_NE(with({"--max-lines=2"}).find("\n\nPass 2, depth 3"), std::string::npos);
    // A short one ends a search that would take hours.
    const ToolRun timed =
        runBody(explainMain, {"--line=a4", "--depth=20", "--time=0.5", "--hash=1"});
    EXPECT_EQ(timed.status, 0);
    EXPECT_NE(timed.output.find("pass no. 1:"), std::string::npos);
    // Without depth and time it is five plies, with a time as many as it allows.
    std::vector<std::string> usual = {"7k/p7/P7/8/8/8/8/K7 w - - 0 1", "--line=a1a2", "--hash=1"};
    const std::string output = runBody(explainMain, usual).output;
    EXPECT_NE(output.find("pass no. 4:"), std::string::npos);
    EXPECT_EQ(output.find("pass no. 5:"), std::string::npos);
    usual.emplace_back("--time=1");
    EXPECT_NE(runBody(explainMain, usual).output.find("pass no. 5:"), std::string::npos);
}

TEST(ExplainTool, LeavesOutFirstPassesAndTheEndOfTheLast) {
    const std::vector<std::string> passes = {"a\n", "b\nb\n", "\nc\n"};
    const std::vector<std::pair<int, std::string>> cases = {
        {5, "a\nb\nb\n\nc\n"},
        {4, "(1 line left out before)\nb\nb\n\nc\n"},
        {3, "(3 lines left out before)\n\nc\n"},
        {1, "(3 lines left out before)\n\n(1 line left out here)\n"},
    };
    for (const auto& [maxLines, text] : cases) {
        EXPECT_EQ(joinShortened(passes, maxLines), text) << maxLines;
    }
    const std::vector<std::string> words = {"--line=e4", "--depth=1", "--hash=1", "--max-lines=1"};
    EXPECT_EQ(runBody(explainMain, words).output,
              "  pass no. 0:\n(59 lines left out here)\n"
              "In play it would not search here: its book has d4, Nf3, e4, c4.\n");
}

// The built tool on a terminal of its own, which is its standard error as well.
class OnTerminal {
public:
    // Whether the system gives a terminal at all; a closed container may have none.
    static bool isPossible() {
        int own = -1;
        int ofTool = -1;
        if (openpty(&own, &ofTool, nullptr, nullptr, nullptr) != 0) {
            return false;
        }
        close(own);
        close(ofTool);
        return true;
    }

    // The terminal has 100 columns.
    OnTerminal(const char* noColor, const char* term, std::vector<std::string> words) {
        words.insert(words.begin(), KESTRAN_BINARY_DIR "/kestran-explain");
        std::vector<char*> argv(words.size() + 1, nullptr);
        std::ranges::transform(words, argv.begin(), [](std::string& word) { return word.data(); });
        const winsize size = {.ws_row = 50, .ws_col = 100, .ws_xpixel = 0, .ws_ypixel = 0};
        child = forkpty(&terminal, nullptr, nullptr, &size);
        if (child < 0) {
            throw std::runtime_error("there is no pseudo-terminal");
        }
        if (child == 0) {
            setenv("NO_COLOR", noColor, 1);
            setenv("TERM", term, 1);
            execv(argv[0], argv.data());
            _exit(127);
        }
    }
    OnTerminal(const OnTerminal&) = delete;
    OnTerminal& operator=(const OnTerminal&) = delete;
    ~OnTerminal() {
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        close(terminal);
    }

    // Reads until `what` has come, or to the end of the output.
    void readUntil(const std::string& what) {
        std::array<char, 4096> buffer;
        ssize_t got = 1;
        while (got > 0 && text.find(what) == std::string::npos) {
            got = read(terminal, buffer.data(), buffer.size());
            text.append(buffer.data(), got > 0 ? at(static_cast<int>(got)) : 0);
        }
    }
    void pressControlC() const { EXPECT_EQ(write(terminal, "\x03", 1), 1); }
    // All from the report on.
    std::string getReport() {
        readUntil("\nIt prefers ");
        return text.substr(std::min(text.find("Position:"), text.size()));
    }

private:
    int terminal = -1;
    pid_t child;
    std::string text;
};

TEST(ExplainTool, ColoursATerminalOnly) {
    if (!OnTerminal::isPossible()) {
        GTEST_SKIP() << "there is no pseudo-terminal";
    }
    const auto report = [](const char* noColor, const char* term) {
        return OnTerminal(noColor, term, {"--line=e4", "--depth=1", "--hash=1"}).getReport();
    };
    EXPECT_NE(report("", "xterm").find("\x1b[1m1. e4 *\x1b[0m"), std::string::npos);
    OnTerminal many("", "xterm",
                    {"r1bqkbnr/pppp1ppp/2n5/4p3/2B1P3/5Q2/PPPP1PPP/RNB1K1NR b KQkq - 3 3",
                     "--line=Bc5 Qxf7", "--depth=2", "--hash=1"});
    OnTerminal cut("", "xterm",
                   {"7k/5Q2/8/6K1/8/8/8/8 w - - 0 1", "--line=Kg6", "--depth=2", "--hash=1"});
    const std::string reports = many.getReport() + cut.getReport();
    for (const char* painted : {"\x1b[32msearched, inside", "\x1b[31msearched, failed low",
                                "\x1b[33msearched, failed high", "\x1b[31mcut by lmf"}) {
        EXPECT_NE(reports.find(painted), std::string::npos) << painted;
    }
    for (const std::string& plain : {report("1", "xterm"), report("", "dumb")}) {
        EXPECT_NE(plain.find("1. e4 *"), std::string::npos);
        EXPECT_EQ(plain.find('\x1b'), std::string::npos);
    }
    // A file is as without a terminal: a plain record by default, and neither coloured nor wrapped.
    const TestFolder folder;
    for (const char* format : {"--all", "--format=tree"}) {
        std::vector<std::string> words = {"--line=e4", "--depth=1", "--hash=1", format};
        const std::string expected = runBody(explainMain, words).output;
        const std::string path = folder.path + "/report";
        words.insert(words.end(), {"-o", path});
        OnTerminal("", "xterm", words).readUntil("nothing");
        std::ifstream file(path);
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), expected) << format;
    }
}

// Every line fits, and lines that are continued keep the strokes of the tree.
TEST(ExplainTool, WrapsTheTreeOnATerminal) {
    if (!OnTerminal::isPossible()) {
        GTEST_SKIP() << "there is no pseudo-terminal";
    }
    OnTerminal tool("1", "xterm", {"--line=d4 e5", "--depth=2", "--hash=16"});
    tool.readUntil("In play it would");
    std::string report = tool.getReport();
    EXPECT_NE(
        report.find("\n   │                                                   inside the window"),
        std::string::npos)
        << report;
    std::erase(report, '\r');
    std::istringstream lines(report);
    std::size_t widest = 0;
    for (std::string line; std::getline(lines, line);) {
        widest = std::max(widest, countColumns(line));
    }
    EXPECT_LE(widest, 100U) << report;
    EXPECT_GT(widest, 90U) << report;
}

TEST(ExplainTool, ReportsWhatThereIsAtControlC) {
    if (!OnTerminal::isPossible()) {
        GTEST_SKIP() << "there is no pseudo-terminal";
    }
    OnTerminal tool("1", "xterm", {"--line=a4 a5", "--depth=20", "--hash=16"});
    tool.readUntil("depth 2 done");
    tool.pressControlC();
    const std::string report = tool.getReport();
    EXPECT_NE(report.find("Pass 1, depth 2"), std::string::npos) << report;
    EXPECT_NE(report.find("\nIt prefers "), std::string::npos) << report;
}

// ---- Notation ----

TEST(SearchText, WritesScoresInPawnsAndMates) {
    const std::vector<std::pair<int, std::string>> cases = {
        {0, "+0.00"},
        {-4, "+0.00"},
        {-5, "-0.01"},
        {1234, "+1.23"},
        {UPPER_MATE_LIMIT, "+2147483.30"},
        {-MATED_EVALUATION - 1, "#1"},
        {-MATED_EVALUATION - 2, "#1"},
        {-MATED_EVALUATION - 5, "#3"},
        {MATED_EVALUATION, "mated"},
        {MATED_EVALUATION + 1, "#-1"},
        {MATED_EVALUATION + 2, "#-1"},
        {MATED_EVALUATION + 6, "#-3"},
        {DEFAULT_FIRST_ALFA, "-inf"},
        {closerToCheckMate(DEFAULT_FIRST_BETA), "+inf"},
    };
    for (const auto& [score, text] : cases) {
        EXPECT_EQ(scoreText(score), text) << score;
    }
}

} // namespace
