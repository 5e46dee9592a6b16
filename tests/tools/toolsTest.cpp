// The tools that measure: what they print, and what they say to bad input.

#include "base/cppIoUtils.h"
#include "kestran-bench/bench.h"
#include "kestran-bench/benchReport.h"
#include "search/statistics.h"
#include "support/cli.h"
#include "support/json.h"
#include "support/textFile.h"
#include "support/uciProcess.h"
#include "testing/boardSupport.h"
#include "testing/regex.h"
#include "testing/toolSupport.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace {

const std::string BENCH = KESTRAN_BINARY_DIR "/kestran-bench";
const std::string PERFT = KESTRAN_BINARY_DIR "/kestran-perft";

// The folder of the project.
std::filesystem::path root() {
    return std::filesystem::path(KESTRAN_TEST_DATA).parent_path().parent_path();
}

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

// The number that ends `line`, which must consist of `name` and that number.
std::int64_t numberOf(const std::string& line, const std::string& name) {
    const auto parts = TextPattern(name + "(\\d+)(?: ms)?").match(line);
    EXPECT_TRUE(parts) << line << " instead of " << name;
    return parts ? std::stoll(parts->at(1)) : -1;
}

// Of a search with a fresh table.
std::int64_t nodesOf(const char* fen, int depth, int mebibytes) {
    const auto config = EngineConfig::getProdConfig();
    config->hashTableSize = entriesOf(mebibytes);
    return searchAfresh(*config, positionOf(fen), depth).nodes;
}

TEST(Bench, PrintsALineForEachSearchAndTheSignatureLast) {
    const auto positions = getBenchPositions();
    const ToolRun bench = run(BENCH, {"--depth", "1"});
    ASSERT_EQ(bench.status, 0);
    EXPECT_EQ(bench.errors, "");
    const std::vector<std::string> lines = linesOf(bench.output);
    ASSERT_EQ(lines.size(), positions.size() + 3);

    const TextPattern form(" *(\\d+)  depth  1  score +(-?\\d+|mate [-+]\\d+)  nodes +(\\d+)"
                           "  time [ \\d]{5}\\d ms  best ([a-h][1-8][a-h][1-8][qrbn]?)");
    std::int64_t nodes = 0;
    for (std::size_t i = 0; i < positions.size(); ++i) {
        const auto parts = form.match(lines[i]);
        ASSERT_TRUE(parts) << lines[i];
        EXPECT_EQ(parts->at(1), std::to_string(i + 1));
        const std::int64_t alone = nodesOf(positions[i].fen, 1, 16);
        EXPECT_EQ(std::stoll(parts->at(3)), alone) << lines[i];
        nodes += alone;
    }
    numberOf(lines.end()[-3], "Time: ");
    numberOf(lines.end()[-2], "Nodes per second: ");
    EXPECT_EQ(numberOf(lines.back(), "Bench: "), nodes);
}

TEST(Bench, GivesTheTableTheSizeAskedFor) {
    const char* fen = getBenchPositions().front().fen;
    UciProcess bench(BENCH, {"--hash", "0", "--depth", "3"}); // of which the first line is enough
    const std::string line = bench.readLine(PATIENCE).value_or("");
    const std::int64_t nodes = nodesOf(fen, 3, 0);
    EXPECT_NE(line.find(" " + std::to_string(nodes) + " "), std::string::npos) << line;
    EXPECT_NE(nodes, nodesOf(fen, 3, 16));
}

TEST(Bench, ChangesASetting) {
    const auto nodesWith = [](const std::string& setting) {
        const ToolRun bench = run(BENCH, {"--depth", "1", "--hash", "1", "--set", setting});
        return numberOf(linesOf(bench.output).back(), "Bench: ");
    };
    EXPECT_LT(nodesWith("QuiscenceMaxDepth=1"), nodesWith("QuiscenceMaxDepth=10"));
}

#ifdef KESTRAN_SLOW_BUILD
const char* const PLIES = "1";
#else
const char* const PLIES = "2";
#endif

// Node for node, with any size of the table: nothing is left to what memory holds.
TEST(Bench, IsTheSameInEveryFreshProcess) {
    for (const char* hash : {"0", "8"}) {
        const auto signature = [&] {
            const std::string output = run(BENCH, {"--hash", hash, "--depth", PLIES}).output;
            return numberOf(linesOf(output).back(), "Bench: ");
        };
        EXPECT_EQ(signature(), signature()) << hash;
    }
}

// The lines of a report that TestStatistics can read.
std::vector<std::string> countersIn(const std::string& report) {
    std::vector<std::string> lines = linesOf(report);
    std::erase_if(lines, [](const std::string& line) {
        return !line.starts_with("Run: ") && line.find(" at ply ") == std::string::npos;
    });
    return lines;
}

// Both searches count each legal move once, as a node and in the statistics. Each position
// has a report of its own.
TEST(Bench, PrintsStatisticsThatCanBeReadBack) {
    const ToolRun bench = run(BENCH, {"--stats", "--depth=1", "--hash", "1"});
    EXPECT_EQ(bench.output.find("nan"), std::string::npos);
    const TextPattern behindPosition(" *\\d+  depth .*");
    std::vector<std::string> parts;
    for (const std::string& line : linesOf(bench.output)) {
        if (parts.empty() || behindPosition.matches(line)) {
            parts.emplace_back();
        }
        parts.back() += line + '\n';
    }
    std::int64_t legalMoves = 0;
    for (const std::string& part : parts) {
        const auto statistics = std::make_unique<TestStatistics>();
        for (const std::string& line : linesOf(part)) {
            statistics->readLine(line);
        }
        std::stringstream report;
        statistics->printAll(report);
        EXPECT_EQ(countersIn(report.str()), countersIn(part));
        for (int pass = 0; pass <= statistics->getRunPointer(); ++pass) {
            for (int ply = 0; ply < MAX_PLIES; ++ply) {
                legalMoves += statistics->get(pass, TestStatistics::ORDINAL_SEARCH, ply) +
                              statistics->get(pass, TestStatistics::Q_SEARCH, ply);
            }
        }
    }
    EXPECT_EQ(parts.size(), getBenchPositions().size());
    EXPECT_EQ(numberOf(linesOf(bench.output).back(), "Bench: "), legalMoves);
    const ToolRun twice = run(BENCH, {"--stats", "--depth=1", "--hash", "1", "--repeat", "2"});
    EXPECT_EQ(countersIn(twice.output), countersIn(bench.output)) << "of the last run";
}

TEST(Bench, IsThatOfTheModernFrontEnd) {
    using Words = std::vector<std::string>;
    for (const auto& [modernWords, words] : {
#ifndef KESTRAN_SLOW_BUILD
             std::pair(Words{"bench"}, Words{}),
#endif
             std::pair(Words{"bench", "1"}, Words{"--depth", "1"})}) {
        const ToolRun modern = run(KESTRAN_BINARY_DIR "/kestran-modern", modernWords);
        const std::int64_t nodes = numberOf(linesOf(run(BENCH, words).output).back(), "Bench: ");
        const TextPattern form(std::to_string(nodes) + " nodes (\\d+) nps\n");
        const auto printed = form.match(modern.output);
        ASSERT_TRUE(printed) << modern.output;
        // Not all of it in a single millisecond.
        EXPECT_LT(std::stoll(printed->at(1)), 1000 * nodes);
    }
}

// Mates for and against the side to move, one on the board, and a stalemate.
TEST(Bench, SearchesThePositionsOfAFile) {
    const TextFile file("6k1/5ppp/8/8/8/8/8/R5K1 w - - bm Ra8; id \"a\\b\";\n"
                        "7k/8/6K1/8/8/8/8/R7 b - - 3 40\n"
                        "7k/6Q1/6K1/8/8/8/8/8 b \" -\n"
                        "7k/5Q2/6K1/8/8/8/8/8 b - -\n");
    const std::vector<std::string> lines = linesOf(run(BENCH, {"--epd", file.path}).output);
    ASSERT_EQ(lines.size(), 7U);
    for (const auto& [line, score] : std::vector<std::pair<std::size_t, std::string>>{
             {0, "  score mate +1  "},
             {1, "  score mate -1  "},
             {2, "  score   mated  "},
             {3, "  score       0  "},
         }) {
        EXPECT_NE(lines[line].find(score), std::string::npos) << lines[line];
    }
    EXPECT_TRUE(lines[2].ends_with("best (none)")) << lines[2];

    EXPECT_TRUE(
        run(BENCH, {"--epd", file.path, "--depth", "1"}).output.starts_with(" 1  depth  1 "));

    const Json json = Json::parse(
        run(BENCH, {"--epd", file.path, "--json", "--repeat", "3", "--hash", "1"}).output);
    EXPECT_EQ(json["schema"], 1);
    EXPECT_EQ(json["runs"], 3);
    EXPECT_EQ(json["hash"], 1);
    EXPECT_EQ(json["positions"].size(), 4U);
    const Json& mated = json["positions"][1];
    EXPECT_EQ(mated["fen"], "7k/8/6K1/8/8/8/8/R7 b - - 3 40");
    EXPECT_EQ(mated["depth"], 4);
    EXPECT_EQ(mated["mate"], -1);
    EXPECT_EQ(json["positions"][2]["fen"], "7k/6Q1/6K1/8/8/8/8/8 b \" -");
    EXPECT_TRUE(json["positions"][2]["best"].is_null());
    EXPECT_TRUE(json["positions"][3]["mate"].is_null());
    EXPECT_EQ(json["bench"], numberOf(lines[6], "Bench: "));
}

// Times of three positions in four runs, of which the sums are 100, 50, 400 and 200.
TEST(Bench, PrintsMedianAndExtremesOfSeveralRuns) {
    std::vector<BenchedPosition> positions;
    for (const std::vector<Milliseconds>& millis :
         {std::vector<Milliseconds>{40, 10, 100, 50}, {60, 40, 300, 150}, {0, 0, 0, 0}}) {
        positions.push_back({.fen = "", .result = {0, {}, {}, 2000}, .millis = millis});
    }
    positions[0].result.line.evaluation = -1230;
    const Json json = toJson(positions, 16);
    std::ostringstream summary;
    printSummary(json, summary);
    EXPECT_EQ(json["millis"], (Json{{"median", 150}, {"least", 50}, {"most", 400}}));
    EXPECT_EQ(json["positions"][0]["millis"], 45);
    EXPECT_EQ(json["positions"][0]["score"], -1230);
    EXPECT_EQ(json["positions"][0]["nodes"], 2000);
    EXPECT_EQ(summary.str(), "Runs: 4\nTime: 150 ms (50 to 400)\n"
                             "Nodes per second: 45000 (15000 to 120000)\nBench: 6000\n");
}

TEST(Bench, RefusesRunsThatDiffer) {
    BenchedPosition position = {.fen = "8/8"};
    addRun(position, {0, {}, {}, 7, 20});
    addRun(position, {0, {}, {}, 7, 30});
    EXPECT_EQ(position.millis, (std::vector<Milliseconds>{20, 30}));
    EXPECT_THROW(addRun(position, {0, {}, {}, 8}), std::runtime_error);
}

struct PerftCase {
    std::vector<std::string> words;
    std::size_t rootMoves;
    std::string split; // one line
    std::int64_t nodes;
};

// The second position has captures en passant, castling and promotions. All numbers are
// those of the plain rules, too.
TEST(Perft, CountsEachMoveOfTheRoot) {
    const std::string fen = "r3k3/1p1p1p2/8/P1P1P1Pp/8/8/3K4/R7 w q h6 0 30";
    for (const PerftCase& perft : {
             // words, moves of the root, one line, sequences
             PerftCase{{"startpos", "3"}, 20, "g1f3: 440", 8902},
             PerftCase{{"startpos", "1"}, 20, "g1f3: 1", 20},
             PerftCase{{fen, "3"}, 23, "g5h6: 361", 8530},
             PerftCase{{fen, "2", "--moves", "g5h6"}, 16, "e8c8: 22", 361},
             PerftCase{
                 {"r3k3/1p1p1p2/8/P1P1P1Pp/8/8/3K4/R7", "w", "q", "h6", "2"}, 23, "g5h6: 16", 395},
         }) {
        const ToolRun outcome = run(PERFT, perft.words);
        const std::vector<std::string> lines = linesOf(outcome.output);
        ASSERT_EQ(outcome.status, 0);
        ASSERT_EQ(lines.size(), perft.rootMoves + 3);
        std::int64_t sum = 0;
        for (std::size_t i = 0; i < perft.rootMoves; ++i) {
            sum += numberOf(lines[i], "[a-h][1-8][a-h][1-8][qrbn]?: ");
        }
        EXPECT_EQ(std::ranges::count(lines, perft.split), 1) << outcome.output;
        EXPECT_EQ(sum, perft.nodes);
        EXPECT_EQ(numberOf(lines.end()[-3], "Nodes: "), perft.nodes);
        numberOf(lines.end()[-2], "Time: ");
        numberOf(lines.end()[-1], "Nodes per second: ");
    }
    EXPECT_TRUE(run(PERFT, {"  " + fen + " ", "0"}).output.starts_with("Nodes: 1\n"));
    const Json json = Json::parse(run(PERFT, {fen, "2", "--json"}).output);
    EXPECT_EQ(json["fen"], fen);
    EXPECT_EQ(json["depth"], 2);
    EXPECT_EQ(json["moves"].size(), 23U);
    EXPECT_EQ(json["moves"]["g5h6"], 16);
    EXPECT_EQ(json["nodes"], 395);
}

// Fields with and without clocks, with and without a blank before the semicolon, other
// operations among the counts, and counts that are too small or too large.
TEST(Perft, ChecksTheCountsOfAFile) {
    const TextFile file(
        " # counts\n\n"
        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1 ;D1 20 ;D3 8902\r\n"
        "7k/5Q2/6K1/8/8/8/8/8 b -  -;D1 0; id \"x; D2 7\";D2 0\n"
        "8/5bk1/8/2Pp4/8/1K6/8/8 w - d6 c0 \"x\"; D1 7 ;D2 105;D5 1\n"
        "7k/8/6K1/8/8/8/8/8 b - - ;Draw 1 ;D1 1\n");
    const ToolRun check = run(PERFT, {"--epd", file.path, "3"});
    EXPECT_EQ(check.status, 1);
    const std::vector<std::string> lines = linesOf(check.output);
    ASSERT_EQ(lines.size(), 9U) << check.output << check.errors;
    EXPECT_EQ(lines[1], "ok     line 4: 7k/5Q2/6K1/8/8/8/8/8 b - -");
    EXPECT_EQ(lines[2],
              "WRONG  line 5, D1 is 8, not 7, D2 is 104, not 105: 8/5bk1/8/2Pp4/8/1K6/8/8 w - d6");
    EXPECT_TRUE(lines[3].starts_with("ok     line 6")) << "a right count after a wrong one";
    EXPECT_EQ(lines[4] + '/' + lines[5], "Positions: 4/Counts: 7, wrong: 2");
    const ToolRun asJson = run(PERFT, {"--epd", file.path, "3", "--json"});
    EXPECT_EQ(asJson.status, 1);
    const Json json = Json::parse(asJson.output);
    EXPECT_EQ(json["wrong"], 2);
    EXPECT_EQ(json["nodes"], 20 + 8902 + 8 + 104 + 1);
    EXPECT_EQ(json["positions"][2]["line"], 5);
    EXPECT_EQ(json["positions"][2]["counts"][1],
              (Json{{"depth", 2}, {"expected", 105}, {"found", 104}}));
    EXPECT_EQ(run(PERFT, {"--epd", file.path, "1"}).status, 1) << "a single wrong count";
    EXPECT_EQ(run(PERFT, {"--epd", KESTRAN_TEST_DATA "/perft.epd", "2"}).status, 0);
    expectRefusal(run(PERFT, {"--epd", KESTRAN_TEST_DATA "/perft.epd", "0"}), "at most 0 plies");
}

TEST(Perft, RefusesABadFileOfCounts) {
    const std::string bare = "7k/5Q2/6K1/8/8/8/8/8 b - - ";
    for (const auto& [text, reason] : std::vector<std::pair<std::string, std::string>>{
             {"# nothing\n", "holds no position"},
             {bare + "\n", "has no count"},
             {bare + "; D1", "line 1 has no count after D1"},
             {bare + "; D1 2x", "line 1 has no count after D1"},
             {bare + "; D1 2 3", "line 1 has no count after D1"},
             {std::string("\x1b[2J\0\n", 6), "the position \"?[2J?\" cannot be played"},
             {bare + "; D13 2", "the depth after D is a whole number from 0 to 12"},
             {bare + "; D1 0\n\n8/8 w - - ; D1 0",
              ":3: the position \"8/8 w - -\" cannot be played"},
         }) {
        const TextFile file(text);
        expectRefusal(run(PERFT, {"--epd", file.path}), reason);
    }
}

// Lines "PROGRAM WORDS|REASON", where the message contains the reason. $0 is the engine.
TEST(Tools, RefuseBadInputInOneLine) {
    const TestFolder folder;
    std::ifstream cases(KESTRAN_TEST_DATA "/refusals.txt");
    int count = 0;
    for (std::string words, reason; std::getline(cases, words, '|') && std::getline(cases, reason);
         ++count) {
        const std::string script = "cd " + folder.path + " && exec \"$0\"-" + words;
        const ToolRun bad = run("/bin/sh", {"-c", script, KESTRAN_BINARY_DIR "/kestran"});
        expectRefusal(bad, reason);
        EXPECT_TRUE(bad.errors.starts_with("kestran-")) << words << ": " << bad.errors;
    }
    EXPECT_EQ(count, 116);
}

#ifndef KESTRAN_SLOW_BUILD // a sanitizer needs more memory than there is
TEST(Tools, RefuseATableThatMemoryCannotHold) {
    const TextFile file("7k/8/8/8/8/8/8/KR6 w - -\n");
    for (const std::string& words :
         {std::string("bench --depth 1"), "bench --nodes 1 --epd " + file.path,
          std::string("explain --depth 1"), std::string("explain --depth 1 --line e4")}) {
        const std::string script = "ulimit -v 100000; exec \"$0\"-$1 --hash 512";
        expectRefusal(run("/bin/bash", {"-c", script, KESTRAN_BINARY_DIR "/kestran", words}),
                      "there is no memory for a hash table of 512 MiB");
    }
}
#endif

TEST(Tools, PrintHelpAndVersion) {
    for (const std::string tool : {"bench", "book", "explain", "perft", "play", "soak", "modern"}) {
        const std::string path = KESTRAN_BINARY_DIR "/kestran-" + tool;
        const ToolRun help = run(path, {"--help"});
        EXPECT_EQ(help.status, 0);
        EXPECT_EQ(help.errors, "");
        EXPECT_TRUE(help.output.starts_with("Usage: kestran-" + tool)) << help.output;
        EXPECT_NE(help.output.find("\nExit status:\n  0 "), std::string::npos) << help.output;
        EXPECT_EQ(run(path, {"-h"}).output, help.output);
        const ToolRun version = run(path, {"--version"});
        EXPECT_EQ(version.status, 0);
        EXPECT_EQ(version.output, "kestran-" + tool + " (Kestran) " KESTRAN_VERSION "\n");
    }
    EXPECT_NE(run(BENCH, {"--help"}).output.find(" (1 or more)"), std::string::npos);
}

// The disk is full before the first byte, so that each write of a tool fails.
TEST(Tools, FailWhenTheirOutputCannotBeWritten) {
    for (const std::string arguments : {"--help", "startpos 1"}) {
        const ToolRun full = run("/bin/sh", {"-c", "\"$0\" $1 > /dev/full", PERFT, arguments});
        EXPECT_EQ(full.status, 1);
        EXPECT_EQ(full.errors, "kestran-perft: standard output cannot be written\n");
    }
    EXPECT_EQ(run("/bin/sh", {"-c", "printf 'a\\nb'"}).output, "a\nb\n") << "the last line";
}

// In a repository of its own, with a bench that always says 7.
TEST(CheckBench, ComparesWithTheHistoryAndAsksEachChangeOfTheEngine) {
    const std::string script = R"(
        folder=$(mktemp -d) && trap 'rm -rf "$folder"' EXIT && mkdir "$folder/dev" &&
        cp "$0" "$folder/dev/check-bench" && cd "$folder" && git init -q . || exit
        git config user.name n; git config user.email e; git config commit.gpgsign no
        commit() { git commit -q --allow-empty -m "$1"; }
        check() { dev/check-bench ./bench > /dev/null 2>&1; echo "$1: $?"; }
        printf '#!/bin/sh\necho 1 depth 2\necho Bench: 7\n' > bench && chmod +x bench
        commit 'Begin';                                      check none
        commit $'Add the bench\n\nWhy so.\nBench: 7';        check same
        commit $'Tidy up Bench: 9\n\nNo functional change';  check kept
        commit $'Search less\n\nBench: 77\nWas: Bench: 7';    check differs
        commit $'Search more\n\nBench: 7';                   check back
        commit 'Write of Bench: 7';                          check still
        mkdir src; touch src/a; git add src
        commit $'Touch a file\n\nNo functional change';      check stated
        touch src/b; git add src
        commit $'Say\n\nNo functional change\n\ntoo early';  check silent
        git tag v1; commit 'Go on';                          check tagged
        rm bench;                                            check missing)";
    const ToolRun checks = run("/bin/bash", {"-c", script, root() / "dev/check-bench"});
    EXPECT_EQ(checks.output, "none: 0\nsame: 0\nkept: 0\ndiffers: 1\nback: 0\nstill: 0\n"
                             "stated: 0\nsilent: 1\ntagged: 0\nmissing: 2\n")
        << checks.errors;
}

// In a folder of two layers, low/ with a.h, a.cpp and b.h, and above it high/ with c.h.
TEST(CheckLayers, RefusesWhatPointsUpAndCircles) {
    const std::string script = R"(
        folder=$(mktemp -d) && trap 'rm -rf "$folder"' EXIT && cd "$folder" || exit
        mkdir -p src/low src/high
        low=("$PWD"/src/low/{a.h,a.cpp,b.h}) high=("$PWD/src/high/c.h")
        printf 'set(%s)\n' 'layers low high' 'root_low src' 'root_high src' 'known_low low' \
            'known_high high low' "files_low ${low[*]}" "files_high ${high[*]}" > plan.cmake
        # check NAME [FILE includes HEADER]...
        check() {
            local name=$1 status=0
            : | tee "${low[@]}" "${high[@]}"
            while shift && (($#)); do
                echo "#include \"${1#* includes }\"" >> "src/${1%% *}"
            done
            cmake -D PLAN=plan.cmake -D ROOT="$PWD" -P "$0" 2> errors || status=$?
            echo "$name: $status" $(tr -s '\n ' ' ' < errors | grep -oE 'low/.*(include|layer)|circle,')
        }
        check sound 'low/a.cpp includes low/a.h' 'low/a.h includes low/b.h' 'high/c.h includes low/a.h'
        check upward 'low/a.cpp includes high/c.h'
        check homeless 'low/b.h includes lower/d.h'
        check circle 'low/a.h includes low/b.h' 'low/b.h includes low/a.h'
        check circleBySource 'low/a.cpp includes low/b.h' 'low/b.h includes low/a.h')";
    const ToolRun checks = run("/bin/bash", {"-c", script, root() / "cmake/CheckLayers.cmake"});
    EXPECT_EQ(checks.output, "sound: 0\nupward: 1 low/a.cpp may not include\n"
                             "homeless: 1 low/b.h: lower/d.h lies in no layer\n"
                             "circle: 1 circle,\ncircleBySource: 1 circle,\n")
        << checks.errors;
}

// The scripts refuse wrong arguments before they build anything.
TEST(Scripts, RefuseWrongArguments) {
    for (const char* seconds : {"0", "-1", "99999999999999999999", "1.5", "60s"}) {
        const ToolRun refused = run(root() / "dev/fuzz", {seconds});
        EXPECT_EQ(refused.status, 2) << seconds;
        EXPECT_NE(refused.errors.find("SECONDS is a whole number"), std::string::npos) << seconds;
    }
    const ToolRun help = run(root() / "run", {"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.output.starts_with("Usage: ./run"));
    for (const char* words : {"paly", "web page"}) {
        const ToolRun unknown = run(root() / "run", splitString(words));
        EXPECT_EQ(unknown.status, 2);
        EXPECT_EQ(unknown.output, "");
        EXPECT_NE(unknown.errors.find("unknown command \"" + std::string(words) + '"'),
                  std::string::npos);
    }
}

// A file that cannot be written leaves no draft, and the file that it was to replace unchanged.
TEST(WriteWhole, WritesAllOrNothing) {
    const TestFolder folder;
    const std::string path = folder.path + "/file";
    const std::string link = folder.path + "/link";
    const auto text = [&] {
        std::ifstream file(path);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    writeWhole(path, "new\n");
    EXPECT_EQ(text(), "new\n");
    std::filesystem::create_symlink(path, link);
    std::filesystem::permissions(path, std::filesystem::perms(0640));
    writeWhole(link, "newer\n");
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));
    EXPECT_EQ(text(), "newer\n");
    std::filesystem::remove(link);

    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small = {1, limit.rlim_max};
    std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_THROW(writeWhole(path, "too long"), std::runtime_error);
    setrlimit(RLIMIT_FSIZE, &limit);
    EXPECT_EQ(text(), "newer\n");
    EXPECT_THROW(writeWhole("/dev/full", "x"), std::runtime_error);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full")) << "a device is not replaced";

    for (const std::string& bad :
         {std::string(), folder.path, path + "/a", link + "/a", BENCH + "/a"}) {
        EXPECT_THROW(requireWritable(bad), UsageError) << bad;
    }
    for (const std::string& good : {path, link, std::string("/dev/full")}) {
        EXPECT_NO_THROW(requireWritable(good)) << good;
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), 1);
}

// What a program of three options makes of a command line.
struct SmallProgram {
    explicit SmallProgram(const std::vector<std::string>& line) {
        std::vector<const char*> argv = {"small"};
        for (const std::string& word : line) {
            argv.push_back(word.c_str());
        }
        Program program("small", "[OPTION]... [WORD]...", "Does little.", "it failed");
        program.addWords("WORD", words, "a word");
        program.addNumber("--number", number, -3, 7, "N", "a number");
        program.addSeconds("--time", time, 60, "seconds");
        program.addChoice("--side", side, {"left", "right"}, "SIDE", "a side");
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        status = program.run(static_cast<int>(argv.size()), argv.data(), [this] {
            if (side == "right") {
                throw std::runtime_error("no right side");
            }
            return 5;
        });
        output = testing::internal::GetCapturedStdout();
        errors = testing::internal::GetCapturedStderr();
    }

    std::vector<std::string> words;
    int number = 2;
    Milliseconds time = 1500;
    std::string side = "left";
    int status;
    std::string output;
    std::string errors;
};

TEST(Program, TakesOptionsAndWordsInAnyOrder) {
    const SmallProgram none({});
    EXPECT_EQ(none.status, 5);
    EXPECT_EQ(none.number, 2);
    const SmallProgram all({"k7/8", "--number", "-3", "w", "--time=0.0001", "-", "--side=left"});
    EXPECT_EQ(all.status, 5) << all.errors;
    EXPECT_EQ(all.number, -3);
    EXPECT_EQ(all.time, 1) << "the shortest time";
    EXPECT_EQ(all.words, (std::vector<std::string>{"k7/8", "w", "-"})) << "the fields of a FEN";
    const SmallProgram most({"--number=7", "--time=60"});
    EXPECT_EQ(most.status, 5) << most.errors;
    EXPECT_EQ(most.time, 60000);
    const SmallProgram failed({"--side", "right"});
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.errors, "small: no right side\n");
}

TEST(Program, RefusesWhatItDoesNotTake) {
    for (const auto& [line, reason] : std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{"--number", "8"}, "--number is a whole number from -3 to 7, not \"8\""},
             {{"--number", "7x"}, "--number is a whole number from -3 to 7, not \"7x\""},
             {{"--number"}, "--number takes exactly one value"},
             {{"--number", "1", "--number=1"}, "--number takes exactly one value"},
             {{"--time", "0"}, "--time is a number of seconds above 0, at most 60"},
             {{"--time", "nan"}, "--time is a number of seconds"},
             {{"--time", "61"}, "--time is a number of seconds"},
             {{"--side", "up"}, "--side is one of left, right, not \"up\""},
             {{"--up\n"}, "the following argument was not expected: --up?"},
         }) {
        const SmallProgram refused(line);
        EXPECT_EQ(refused.status, 2);
        EXPECT_EQ(refused.output, "");
        EXPECT_TRUE(refused.errors.starts_with("small: " + reason)) << refused.errors;
        EXPECT_TRUE(refused.errors.ends_with(" (try --help)\n")) << refused.errors;
    }
}

TEST(Program, MakesHelpFromItsDeclaration) {
    const SmallProgram help({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.output, "Usage: small [OPTION]... [WORD]...\n\nDoes little.\n\n"
                           "Arguments:\n  WORD         a word\n\nOptions:\n"
                           "  --number N   a number (-3 to 7; default 2)\n"
                           "  --time S     seconds (default 1.5)\n"
                           "  --side SIDE  a side (default left)\n"
                           "  -h, --help   print this help\n"
                           "  --version    print the version\n\n"
                           "Exit status:\n  0  success\n  1  it failed\n  2  bad input\n");
}

TEST(WrapText, BreaksBeforeTheWidth) {
    EXPECT_EQ(wrapText("one two three", 0, 7), "one two\nthree");
    EXPECT_EQ(wrapText("one two three", 2, 9), "one two\n  three");
    EXPECT_EQ(wrapText("one two three", 0, 6), "one\ntwo\nthree");
    EXPECT_EQ(wrapText("twelve to", 0, 3), "twelve\nto") << "a word that is too long";
    EXPECT_EQ(wrapText("a\n\n  b c", 0, 80), "a\n\n  b c");
    EXPECT_EQ(wrapText("├─├─ aé", 0, 7), "├─├─ aé") << "seven columns";
}

} // namespace
