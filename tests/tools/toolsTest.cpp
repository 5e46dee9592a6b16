// The tools that measure: what they print, and what they say to bad input.

#include "kestran-bench/bench.h"
#include "kestran-bench/benchReport.h"
#include "search/statistics.h"
#include "support/commandLine.h"
#include "support/textFile.h"
#include "support/textPattern.h"
#include "support/uciProcess.h"
#include "testing/boardSupport.h"
#include "testing/toolSupport.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <set>
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
        const BenchResult alone = searchAfresh(positionOf(positions[i].fen), 1, 16);
        EXPECT_EQ(std::stoll(parts->at(3)), alone.nodes) << lines[i];
        nodes += alone.nodes;
    }
    numberOf(lines.end()[-3], "Time: ");
    numberOf(lines.end()[-2], "Nodes per second: ");
    EXPECT_EQ(numberOf(lines.back(), "Bench: "), nodes);
}

TEST(Bench, GivesTheTableTheSizeAskedFor) {
    const Position position = positionOf(getBenchPositions().front().fen);
    UciProcess bench(BENCH, {"--hash", "0", "--depth", "3"}); // of which the first line is enough
    const std::string line = bench.readLine(PATIENCE).value_or("");
    const std::int64_t nodes = searchAfresh(position, 3, 0).nodes;
    EXPECT_NE(line.find(" " + std::to_string(nodes) + " "), std::string::npos) << line;
    EXPECT_NE(nodes, searchAfresh(position, 3, 16).nodes);
}

// Node for node, with any size of the table: nothing is left to what memory holds.
TEST(Bench, IsTheSameInEveryFreshProcess) {
    std::set<std::int64_t> signatures;
    for (const char* hash : {"0", "64"}) {
        const auto signature = [&] {
            const std::string output = run(BENCH, {"--hash", hash, "--depth", "2"}).output;
            return numberOf(linesOf(output).back(), "Bench: ");
        };
        const std::int64_t first = signature();
        EXPECT_EQ(signature(), first) << hash;
        signatures.insert(first);
    }
    EXPECT_GT(signatures.size(), 1U) << "the size plays no part";
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
}

TEST(Bench, IsThatOfTheTester) {
    const ToolRun tester = run(KESTRAN_BINARY_DIR "/kestran-tester", {"bench"});
    const ToolRun bench = run(BENCH, {});
    const auto signature = TextPattern("Bench: (\\d+)").findAll(bench.output);
    ASSERT_EQ(signature.size(), 1U);
    const std::string nodes = signature[0].at(1);
    const auto told = TextPattern(nodes + " nodes (\\d+) nps\n").match(tester.output);
    ASSERT_TRUE(told) << tester.output;
    // Not all of it in a single millisecond.
    EXPECT_LT(std::stoll(told->at(1)), 1000 * std::stoll(nodes));
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

    const std::string json = run(BENCH, {"--epd", file.path, "--json", "--repeat", "3"}).output;
    for (const char* part :
         {R"("fen": "7k/8/6K1/8/8/8/8/R7 b - - 3 40", "depth": 4, "score": )", R"("mate": -1, )",
          R"("fen": "7k/6Q1/6K1/8/8/8/8/8 b \" -")", R"("best": null},)", R"("runs": 3,)"}) {
        EXPECT_NE(json.find(part), std::string::npos) << part << " in " << json;
    }
    EXPECT_TRUE(
        json.ends_with("\n  \"bench\": " + std::to_string(numberOf(lines[6], "Bench: ")) + "\n}\n"))
        << json;
}

// Times of three positions in four runs, of which the sums are 100, 50, 400 and 200.
TEST(Bench, TellsMedianAndExtremesOfSeveralRuns) {
    BenchReport report = {16, 4, {}};
    for (const std::vector<Milliseconds>& millis :
         {std::vector<Milliseconds>{40, 10, 100, 50}, {60, 40, 300, 150}, {0, 0, 0, 0}}) {
        report.positions.push_back({"", 1, {}, 2000, millis});
    }
    std::ostringstream summary;
    printSummary(report, summary);
    EXPECT_EQ(summary.str(), "Runs: 4\nTime: 150 ms (50 to 400)\n"
                             "Nodes per second: 45000 (15000 to 120000)\nBench: 6000\n");
}

struct PerftCase {
    std::vector<std::string> words;
    std::size_t rootMoves;
    std::string split; // one line
    std::int64_t nodes;
};

// The second position has captures en passant, castling and promotions. All numbers are
// those of the naive rules, too.
TEST(Perft, CountsEachMoveOfTheRoot) {
    const std::string fen = "r3k3/1p1p1p2/8/P1P1P1Pp/8/8/3K4/R7 w q h6 0 30";
    for (const PerftCase& perft : {
             // words, moves of the root, one line, sequences
             PerftCase{{"startpos", "3"}, 20, "g1f3: 440", 8902},
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
    EXPECT_TRUE(run(PERFT, {" startpos ", "0"}).output.starts_with("Nodes: 1\n"));
}

// Fields with and without clocks, with and without a blank before the semicolon, other
// operations among the counts, and counts that are too small or too large.
TEST(Perft, ChecksTheCountsOfAFile) {
    const TextFile file(
        "# counts\n\n"
        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1 ;D1 20 ;D3 8902\r\n"
        "7k/5Q2/6K1/8/8/8/8/8 b -  -;D1 0; id \"x; D2 7\";D2 0\n"
        "8/5bk1/8/2Pp4/8/1K6/8/8 w - d6 c0 \"x\"; D1 7 ;D2 105;D5 1\n");
    const ToolRun check = run(PERFT, {"--epd", file.path, "3"});
    EXPECT_EQ(check.status, 1);
    const std::vector<std::string> lines = linesOf(check.output);
    ASSERT_EQ(lines.size(), 8U) << check.output << check.errors;
    EXPECT_EQ(lines[1], "ok     line 4: 7k/5Q2/6K1/8/8/8/8/8 b - -");
    EXPECT_EQ(
        lines[2],
        "WRONG  line 5, D1 is 8 and not 7, D2 is 104 and not 105: 8/5bk1/8/2Pp4/8/1K6/8/8 w - d6");
    EXPECT_EQ(lines[4], "Counts: 6, of which 2 are wrong");
    EXPECT_EQ(run(PERFT, {"--epd", KESTRAN_TEST_DATA "/perft.epd", "2"}).status, 0);
    expectRefusal(run(PERFT, {"--epd", KESTRAN_TEST_DATA "/perft.epd", "0"}), "at most 0 plies");
}

TEST(Perft, TellsWhatIsWrongWithAFileOfCounts) {
    const std::string bare = "7k/5Q2/6K1/8/8/8/8/8 b - - ";
    for (const auto& [text, reason] : std::vector<std::pair<std::string, std::string>>{
             {"# nothing\n", "holds no position"},
             {bare + "\n", "has no count"},
             {bare + "; D1", "line 1 has no count behind D1"},
             {bare + "; D1 2x", "line 1 has no count behind D1"},
             {std::string("\x1b[2J\0\n", 6), "the position \"?[2J?\" cannot be played"},
             {bare + "; D13 2", "the depth behind D is a whole number from 0 to 12"},
             {bare + "; D1 0\n8/8 w - - ; D1 0", ":2: the position \"8/8 w - -\" cannot be played"},
         }) {
        const TextFile file(text);
        expectRefusal(run(PERFT, {"--epd", file.path}), reason);
    }
}

struct BadInput {
    std::string path;
    std::vector<std::string> arguments;
    std::string reason; // that the message gives
};

TEST(Tools, TellOfBadInputInOneLine) {
    const std::string noKing = "8/8/8/8/8/8/8/K7 w - - 0 1";
    for (const BadInput& input : {
             BadInput{BENCH, {"--depth", "0"}, "from 1 to 20, not \"0\""},
             BadInput{BENCH, {"--hash", "513"}, "from 0 to 512"},
             BadInput{BENCH, {"--fast"}, "unknown option --fast"},
             BadInput{BENCH, {"startpos"}, "no \"startpos\""},
             BadInput{BENCH, {"--json", "--stats"}, "do not go together"},
             BadInput{BENCH, {"--depth", "2", "--depth=3"}, "--depth is given twice"},
             BadInput{PERFT, {}, "a position and a depth"},
             BadInput{PERFT, {"3"}, "a position and a depth"},
             BadInput{PERFT, {"startpos", "13"}, "from 0 to 12"},
             BadInput{PERFT, {"K1k5/8/8/8/8/8/8/8", "w", "-", "-", "0", "1"}, "need a depth"},
             BadInput{PERFT, {"startpos", "3", "--moves", "e2e5"}, "not legal"},
             BadInput{PERFT, {"--epd", "/no/file"}, "/no/file cannot be opened"},
             BadInput{PERFT, {"--epd", "/", "startpos", "3"}, "--epd goes with"},
             BadInput{PERFT, {"startpos", "--split", "3"}, "unknown option --split"},
             BadInput{PERFT, {"endpos", "3"}, "four fields"},
             BadInput{PERFT, {noKing, "3"}, "not exactly one king"},
         }) {
        const ToolRun bad = run(input.path, input.arguments);
        expectRefusal(bad, input.reason);
        EXPECT_TRUE(bad.errors.starts_with("kestran-")) << bad.errors;
    }
}

TEST(Tools, TellHowToUseThem) {
    for (const std::string tool : {"bench", "book", "explain", "perft", "play", "soak", "tester"}) {
        const std::string path = KESTRAN_BINARY_DIR "/kestran-" + tool;
        const ToolRun help = run(path, {"--depth", "--help"});
        EXPECT_EQ(help.status, 0);
        EXPECT_EQ(help.errors, "");
        EXPECT_TRUE(help.output.starts_with("Usage: ")) << help.output;
        EXPECT_NE(help.output.find("\nExit status: 0; 1 if "), std::string::npos) << help.output;
        EXPECT_EQ(run(path, {"-h"}).output, help.output);
    }
}

std::string textOf(const std::filesystem::path& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

// What the group of `pattern` matches anywhere in `text`, as options are written.
std::set<std::string> optionsIn(const std::string& text, const char* pattern) {
    std::set<std::string> options;
    for (const TextPattern::Parts& parts : TextPattern(pattern).findAll(text)) {
        options.insert(std::string("-").append(parts.at(1)));
    }
    return options;
}

// What a tool takes, what its help tells, and what its man page lists and shows as its synopsis.
TEST(Tools, HaveTheSameOptionsInCodeHelpAndManual) {
    for (const std::string tool : {"bench", "book", "explain", "perft", "play", "soak"}) {
        std::string code;
        for (const auto& file :
             std::filesystem::directory_iterator(root() / "tools" / ("kestran-" + tool))) {
            code += textOf(file.path());
        }
        const auto taken = optionsIn(code, R"re(take\w+\((?:\w+, )?"-(-?[a-z-]+)")re");
        EXPECT_FALSE(taken.empty()) << tool;
        const std::string help = run(KESTRAN_BINARY_DIR "/kestran-" + tool, {"--help"}).output;
        EXPECT_EQ(optionsIn(help, R"([\s[(]-(-?[a-z][a-z-]*))"), taken) << tool;
        const std::string manual = textOf(root() / "docs/man" / ("kestran-" + tool + ".6"));
        const std::size_t body = manual.find(".Sh DESCRIPTION");
        EXPECT_EQ(optionsIn(manual.substr(0, body), R"(Fl (-?[a-z-]+))"), taken) << tool;
        auto listed = optionsIn(manual.substr(body), R"(\n\.It Fl (-?[a-z-]+))");
        EXPECT_EQ(listed.erase("-h"), 1U) << tool; // which all tools have
        EXPECT_EQ(listed, taken) << tool;
    }
}

// The disk is full before the first byte, so that each write of a tool fails.
TEST(Tools, FailWhenNobodyTakesTheirOutput) {
    for (const std::string arguments : {"--help", "startpos 1"}) {
        const ToolRun full = run("/bin/sh", {"-c", "\"$0\" $1 > /dev/full", PERFT, arguments});
        EXPECT_EQ(full.status, 1);
        EXPECT_EQ(full.errors, "kestran-perft: standard output cannot be written\n");
    }
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
        commit $'Touch a file\n\nNo functional change';      check told
        touch src/b; git add src
        commit $'Say\n\nNo functional change\n\ntoo early';  check silent
        git tag v1; commit 'Go on';                          check tagged
        rm bench;                                            check missing)";
    const ToolRun checks = run("/bin/bash", {"-c", script, root() / "dev/check-bench"});
    EXPECT_EQ(checks.output, "none: 0\nsame: 0\nkept: 0\ndiffers: 1\nback: 0\nstill: 0\n"
                             "told: 0\nsilent: 1\ntagged: 0\nmissing: 2\n")
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
    const ToolRun unknown = run(root() / "run", {"paly"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.output, "");
    EXPECT_NE(unknown.errors.find("unknown word \"paly\""), std::string::npos);
}

// A file that cannot be written leaves nothing behind, and what it was to replace as it was.
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
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), 1);
    EXPECT_THROW(writeWhole("/dev/full", "x"), std::runtime_error);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full")) << "a device is not replaced";

    for (const std::string& bad :
         {std::string(), folder.path, path + "/a", link + "/a", BENCH + "/a"}) {
        EXPECT_THROW(requireWritable(bad), UsageError) << bad;
    }
    for (const std::string& good : {path, link, std::string("/dev/full")}) {
        EXPECT_NO_THROW(requireWritable(good)) << good;
    }
}

CommandLine commandLineOf(std::vector<const char*> words) {
    words.insert(words.begin(), "tool");
    return {static_cast<int>(words.size()), words.data()};
}

TEST(CommandLine, GivesEachWordOnce) {
    CommandLine line = commandLineOf({"one", "--size=5", "--quick", "--name", "--odd", "two"});
    EXPECT_TRUE(line.takeFlag("--quick"));
    EXPECT_FALSE(line.takeFlag("--quick"));
    EXPECT_FALSE(line.takeFlag("--size")) << "a part of a word";
    EXPECT_EQ(line.takeOption("--size"), "5");
    EXPECT_EQ(line.takeOption("--size"), std::nullopt);
    EXPECT_EQ(line.takeOption("--name"), "--odd");
    EXPECT_EQ(line.takeRest(), (std::vector<std::string>{"one", "two"}));

    CommandLine empty = commandLineOf({});
    EXPECT_EQ(empty.takeOption("--size"), std::nullopt);
    EXPECT_TRUE(empty.takeRest().empty());
    EXPECT_EQ(commandLineOf({"--size="}).takeOption("--size"), "");
    EXPECT_EQ(commandLineOf({"-", "-5"}).takeRest().size(), 2U) << "a field of a FEN, a number";
    EXPECT_THROW(commandLineOf({"--size"}).takeOption("--size"), UsageError);
    EXPECT_THROW(commandLineOf({"--size=1", "--size", "2"}).takeOption("--size"), UsageError);
    EXPECT_THROW(commandLineOf({"--quick", "--quick"}).takeFlag("--quick"), UsageError);
    EXPECT_THROW(commandLineOf({"one", "--two"}).takeRest(), UsageError);
    EXPECT_THROW(commandLineOf({"one", "-t"}).takeRest(), UsageError);
}

TEST(CommandLine, ReadsWholeNumbersOfARange) {
    EXPECT_EQ(parseNumber("-3", "it", -3, 7), -3);
    EXPECT_EQ(parseNumber("007", "it", -3, 7), 7);
    for (const std::string bad :
         {"", "-4", "8", "x", "7x", " 7", "7 ", "+7", "7.0", "0x7", "-", "99999999999999999999"}) {
        EXPECT_THROW(parseNumber(bad, "it", -3, 7), UsageError) << '"' << bad << '"';
    }
}

} // namespace
