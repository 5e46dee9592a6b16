// What the tools make of files of games and of positions with answers.

#include "kestran-bench/bench.h"
#include "kestran-bench/solve.h"
#include "kestran-book/book.h"
#include "support/gameInput.h"
#include "support/text.h"
#include "testing/boardSupport.h"
#include "testing/toolSupport.h"

#include <gtest/gtest.h>

namespace {

const std::string PROGRAM = KESTRAN_BINARY_DIR "/kestran-";

const std::string GAMES = "1. e4 c5 2. Nf3 1-0\n\n[White \"A\"]\n1. d4 d5 2. c4 *\n";

TEST(PgnInput, TakesThePositionOfAGame) {
    const TextFile file(GAMES);
    const std::tuple<int, std::optional<int>, std::string> cases[] = {
        {1, {}, "e4 c5 Nf3"}, {1, 0, ""}, {1, 2, "e4 c5"}, {2, {}, "d4 d5 c4"}, {2, 3, "d4 d5 c4"}};
    for (const auto& [number, ply, moves] : cases) {
        const NumberedGame game = readGame({}, "", {file.path, number, ply});
        EXPECT_EQ(getWholeFen(game), getWholeFen(readGame({}, moves))) << moves;
    }
    EXPECT_EQ(getWholeFen(readGame({}, "Nc6", {file.path, 1, 3})),
              getWholeFen(readGame({}, "e4 c5 Nf3 Nc6")));
}

TEST(PgnInput, IsTakenByThePrograms) {
    const TextFile file(GAMES);
    const std::vector<std::string> words = {"--pgn", file.path, "--game", "2", "--ply", "1"};
    const std::string fen = getWholeFen(readGame({}, "d4"));
    const auto withWords = [&](std::vector<std::string> more) {
        more.insert(more.begin(), words.begin(), words.end());
        return more;
    };
    for (const auto& [program, more, shown] :
         std::vector<std::tuple<std::string, std::vector<std::string>, std::string>>{
             {"bench", {"--json"}, R"("depth": 4)"},
             {"bench", {"--json", "--depth", "1"}, R"("depth": 1)"},
             {"book", {"--json"}, R"("move": "g8f6")"},
             {"explain", {"--json", "--depth", "1"}, R"("depth": 1)"}}) {
        const ToolRun tool = run(PROGRAM + program, withWords(more));
        EXPECT_EQ(tool.status, 0) << tool.errors;
        EXPECT_NE(tool.output.find(fen), std::string::npos) << program << tool.output;
        EXPECT_NE(tool.output.find(shown), std::string::npos) << program << tool.output;
    }
    // kestran-play appends its games to the same file.
    const std::string script = R"(echo d5 | "$0" --depth 1 --side black "$@")";
    std::vector<std::string> play = {"-c", script, PROGRAM + "play"};
    play.insert(play.end(), words.begin(), words.end());
    play.back() = "2";
    EXPECT_EQ(run("/bin/sh", play).status, 0);
    const NumberedGame last = readPgnGame({file.path, 3, 0});
    EXPECT_EQ(getWholeFen(last), getWholeFen(readGame({}, "d4 d5")));
    play.erase(play.end() - 4, play.end() - 2); // without --game
    EXPECT_EQ(run("/bin/sh", play).status, 0);
    EXPECT_EQ(getWholeFen(readPgnGame({file.path, 4, 0})), getWholeFen(readGame({}, "e4 c5")));
}

TEST(PgnInput, RefusesWhatIsNotThere) {
    const TextFile file(GAMES + "[Event \"x\"]\n1. e5\n");
    struct Case {
        std::vector<std::string> words;
        std::string what;
    };
    for (const auto& [words, what] : std::vector<Case>{
             {{"--pgn", file.path, "--game", "3"},
              file.path + ":6:4: expected a move or a result: \"e5\" is not legal in its position"},
             {{"--pgn", file.path, "--game", "2", "--ply", "4"}, " has 3 plies, fewer than 4"},
             {{"--pgn", file.path, "--moves", "e4"}, "\"e4\", is not legal"},
         }) {
        expectRefusal(runBody(bookMain, words), what);
    }
    const TextFile sound(GAMES);
    expectRefusal(runBody(bookMain, {"--pgn", sound.path, "--game", "4"}),
                  " has no game 4; the last one is 2");
    expectRefusal(run(PROGRAM + "play", {"--pgn", sound.path, "--game", "3"}), "has no game 3");
}

// ---- Positions with answers ----

// Mate in one by Ra8; 1. Qxd5 wins a queen; only one move; mate.
const std::string ROOK = "6k1/5ppp/8/8/8/8/8/R3K2R w KQ - ";
const std::string QUEEN = "4k3/8/8/3q4/8/8/8/3QK3 w - - ";

TEST(Solve, JudgesTheAnswers) {
    const TextFile file(ROOK + "bm Ra8#; id \"good one\";\n" + ROOK + "bm Kd2 O-O;\n" + ROOK +
                        "am Ra8;\n" + QUEEN + "am Qd2; bm Qxd5;\n" + QUEEN + "am Qxd5 Qd2;\n" +
                        ROOK + "am O-O;\n" + QUEEN + "bm Qd2 Qxd5;\n" + QUEEN +
                        "bm Qxd5; am d1d5\n" + ROOK +
                        "id \"none\";\n7k/5Q2/6K1/8/8/8/8/8 b - - id \"stalemate\";\n");
    const ToolRun text = runBody(benchMain, {"--epd", file.path, "--nodes", "3000"});
    EXPECT_EQ(text.status, 0) << text.errors;
    std::string verdicts;
    std::istringstream lines(text.output);
    for (std::string line; std::getline(lines, line);) {
        verdicts += line.substr(5, 6) + '/';
    }
    EXPECT_EQ(verdicts,
              "solved/missed/missed/solved/missed/solved/solved/missed/-     /-     /d: 4 o/")
        << text.output;
    EXPECT_TRUE(text.output.ends_with("best (none)  stalemate\nSolved: 4 of 8\n")) << text.output;
    EXPECT_NE(text.output.find("best Ra8#  good one\n"), std::string::npos);

    const Json json = Json::parse(
        runBody(benchMain, {"--epd", file.path, "--nodes", "3000", "--json", "--hash", "1"})
            .output);
    EXPECT_EQ(json["schema"], 1);
    EXPECT_EQ(json["hash"], 1);
    EXPECT_EQ(json["nodes"], 3000);
    EXPECT_EQ(json["solved"], 4);
    EXPECT_EQ(json["counted"], 8);
    const std::vector<std::string> blindly = {
        "--epd", file.path, "--nodes", "3000", "--json", "--set", "QuiscenceMaxDepth=0"};
    const Json blind = Json::parse(runBody(benchMain, blindly).output);
    EXPECT_NE(blind["positions"][3]["depth"], json["positions"][3]["depth"]);
    EXPECT_EQ(json["positions"][0]["id"], "good one");
    EXPECT_EQ(json["positions"][1]["line"], 2);
    EXPECT_EQ(json["positions"][1]["solved"], false);
    EXPECT_EQ(json["positions"][1]["best"], "a1a8");
    EXPECT_EQ(json["positions"][8]["solved"], Json());
    EXPECT_EQ(json["positions"][9]["best"], Json());
}

// The start position, which a move solves.
Puzzle puzzleOf(const std::string& best) {
    Puzzle puzzle = {};
    puzzle.record.fen = START_FEN;
    puzzle.record.position = positionOf(START_FEN);
    puzzle.best.push_back(moveOf(puzzle.record.position, best));
    return puzzle;
}

TEST(Solve, SaysFromWhichPassTheAnswerWasKept) {
    const Puzzle puzzle = puzzleOf("e2e4");
    Solution solution = {puzzle, {}};
    int depth = 0;
    for (const char* move : {"e2e4", "d2d4", "e2e4", "e2e4"}) {
        ++depth;
        solution.passes.push_back(
            {moveOf(puzzle.record.position, move), depth, depth * 10, depth * 100});
    }
    const Json json = toJson({solution}, {.time = 2500}, 16);
    std::ostringstream text;
    printSolution(1, solution, text);
    EXPECT_EQ(text.str(), "  1  solved  from depth  3 on,     30 ms  best e4\n");
    EXPECT_EQ(json["time"], 2500);
    EXPECT_EQ(json["positions"][0]["nodes"], 400);
    EXPECT_EQ(json["positions"][0]["keptFrom"],
              (Json{{"depth", 3}, {"millis", 30}, {"nodes", 300}}));
    solution.passes.erase(solution.passes.begin() + 1);
    EXPECT_EQ(solution.keptFrom().depth, 1);
}

TEST(Solve, EndsAtItsLimit) {
    const Puzzle puzzle = puzzleOf("e2e4");
    const EngineConfig config = {.hashTableSize = entriesOf(1)};
    const Milliseconds start = clockMilliseconds();
    constexpr int MANY = std::numeric_limits<int>::max();
    const Solution timed = solve(puzzle, {.time = 50, .nodes = MANY}, config);
    EXPECT_GE(clockMilliseconds() - start, 50);
    EXPECT_LT(clockMilliseconds() - start, 5000);
    EXPECT_GT(timed.passes.size(), 1U);
    const Solution counted = solve(puzzle, {.time = 30000, .nodes = 20000}, config);
    EXPECT_LE(counted.passes.back().nodes, 20000);
    // Too few nodes for a pass: the first legal move.
    const Solution small = solve(puzzle, {.nodes = 1}, config);
    ASSERT_EQ(small.passes.size(), 1U);
    EXPECT_EQ(small.passes.front().depth, 0);
    Puzzle forced = {};
    forced.record.position = positionOf("7k/p7/8/8/8/8/1r6/K7 w - - 0 1");
    EXPECT_GT(solve(forced, {.nodes = 2000}, config).passes.size(), 1U);
}

TEST(Solve, RefusesAnAnswerThatIsNotLegal) {
    const TextFile file("# answers\n" + ROOK + "bm Ra8; am Nf3;\n");
    expectRefusal(runBody(benchMain, {"--epd", file.path, "--time", "1"}),
                  file.path + R"(:2: the move "Nf3" of "am" is not legal in its position)");
}

} // namespace
