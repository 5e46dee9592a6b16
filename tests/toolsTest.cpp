// The tools that measure: what they print, and what they say to bad input.

#include "bench.h"
#include "fenCheck.h"
#include "ioFuncs.h"
#include "moveGenerator.h"
#include "statistics.h"
#include "support/commandLine.h"
#include "support/naiveRules.h"
#include "support/uciProcess.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr UciProcess::Timeout PATIENCE{240000};
const std::string BENCH = KESTRAN_BINARY_DIR "/kestran-bench";
const std::string PERFT = KESTRAN_BINARY_DIR "/kestran-perft";
const std::string START_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
// En passant, castling and promotions within a few moves.
const std::string SHARP_FEN = "r3k3/1p1p1p2/8/P1P1P1Pp/8/8/3K4/R7 w q h6 0 30";

struct Outcome {
    int status = -1;
    std::vector<std::string> lines;
    std::string errors;
};

Outcome run(const std::string& path, const std::vector<std::string>& arguments) {
    UciProcess process(path, arguments);
    Outcome run;
    while (const auto line = process.readLine(PATIENCE)) {
        run.lines.push_back(*line);
    }
    const auto end = process.waitForEnd(PATIENCE);
    run.status = end && end->exited ? end->status : -1;
    run.errors = process.readErrors();
    return run;
}

// The number that ends `line`, which must consist of `name` and that number.
std::int64_t numberOf(const std::string& line, const std::string& name) {
    std::smatch found;
    const bool fits = std::regex_match(line, found, std::regex(name + "(\\d+)(?: ms)?"));
    EXPECT_TRUE(fits) << line << " instead of " << name;
    return fits ? std::stoll(found[1]) : -1;
}

std::int64_t naivePerft(const NaiveBoard& board, int depth) {
    if (depth == 0) {
        return 1;
    }
    std::int64_t nodes = 0;
    for (const std::string& move : board.getLegalMoves()) {
        NaiveBoard next = board;
        next.play(move);
        nodes += naivePerft(next, depth - 1);
    }
    return nodes;
}

TEST(Bench, HasSoundAndDifferentPositions) {
    std::set<std::uint64_t> keys;
    for (const BenchPosition& benchPosition : getBenchPositions()) {
        Position literal;
        Position checked;
        setFenNotation(literal, benchPosition.fen);
        ASSERT_EQ(readPlayableFen(checked, benchPosition.fen), "") << benchPosition.fen;
        EXPECT_EQ(getFen(checked), getFen(literal)) << "a claim was dropped";
        MoveArray moves;
        EXPECT_GT(generateLegalMoves(checked, moves.data()), 0) << benchPosition.fen;
        EXPECT_TRUE(keys.insert(checked.hash).second) << benchPosition.fen;
    }
    EXPECT_GE(keys.size(), 30U);
}

// Also that no search of the set leaves anything to the next one.
TEST(Bench, PrintsALineForEachSearchAndTheSignatureLast) {
    const auto positions = getBenchPositions();
    const Outcome bench = run(BENCH, {"--depth", "1"});
    ASSERT_EQ(bench.status, 0);
    EXPECT_EQ(bench.errors, "");
    ASSERT_EQ(bench.lines.size(), positions.size() + 3);

    const std::regex form(" *(\\d+)  depth  1  score +(-?\\d+|mate -?\\d+)  nodes +(\\d+)"
                          "  best ([a-h][1-8][a-h][1-8][qrbn]?)");
    std::int64_t nodes = 0;
    for (std::size_t i = 0; i < positions.size(); ++i) {
        std::smatch found;
        ASSERT_TRUE(std::regex_match(bench.lines[i], found, form)) << bench.lines[i];
        EXPECT_EQ(found[1], std::to_string(i + 1));
        const BenchResult alone = searchAfresh(positions[i].fen, 1, 16);
        EXPECT_EQ(std::stoll(found[3]), alone.nodes) << bench.lines[i];
        nodes += alone.nodes;
    }
    numberOf(bench.lines.end()[-3], "Time: ");
    numberOf(bench.lines.end()[-2], "Nodes per second: ");
    EXPECT_EQ(numberOf(bench.lines.back(), "Bench: "), nodes);
}

TEST(Bench, GivesTheTableTheSizeAskedFor) {
    const std::string fen = getBenchPositions().front().fen;
    UciProcess bench(BENCH, {"--hash", "0", "--depth", "3"}); // of which the first line is enough
    const std::string line = bench.readLine(PATIENCE).value_or("");
    const std::int64_t nodes = searchAfresh(fen, 3, 0).nodes;
    EXPECT_NE(line.find(" " + std::to_string(nodes) + " "), std::string::npos) << line;
    EXPECT_NE(nodes, searchAfresh(fen, 3, 16).nodes);
}

// The lines of a report that TestStatistics can read.
std::vector<std::string> countersIn(std::vector<std::string> lines) {
    std::erase_if(lines, [](const std::string& line) {
        return !line.starts_with("Run: ") && line.find(" at ply ") == std::string::npos;
    });
    return lines;
}

// Both searches count each legal move once, as a node and in the statistics.
TEST(Bench, PrintsStatisticsThatCanBeReadBack) {
    const Outcome bench = run(BENCH, {"--stats", "--depth=1", "--hash", "1"});
    ASSERT_EQ(bench.status, 0);
    const auto statistics = std::make_unique<TestStatistics>();
    for (const std::string& line : bench.lines) {
        statistics->readLine(line);
    }
    std::stringstream report;
    statistics->printAll(report);
    std::vector<std::string> lines;
    for (std::string line; std::getline(report, line);) {
        lines.push_back(line);
    }
    EXPECT_EQ(countersIn(lines), countersIn(bench.lines));

    std::int64_t legalMoves = 0;
    for (int pass = 0; pass <= statistics->getRunPointer(); ++pass) {
        for (int ply = 0; ply < MAX_PLIES; ++ply) {
            legalMoves += statistics->get(pass, TestStatistics::ORDINAL_SEARCH, ply) +
                          statistics->get(pass, TestStatistics::Q_SEARCH, ply);
        }
    }
    EXPECT_EQ(numberOf(bench.lines.back(), "Bench: "), legalMoves);
}

TEST(Perft, CountsEachMoveOfTheRoot) {
    for (const std::string& fen : {START_FEN, SHARP_FEN}) {
        const NaiveBoard board(fen);
        std::vector<std::string> expected;
        for (const std::string& move : board.getLegalMoves()) {
            NaiveBoard next = board;
            next.play(move);
            expected.push_back(move + ": " + std::to_string(naivePerft(next, 2)));
        }
        const Outcome perft = run(PERFT, {fen, "3"});
        ASSERT_EQ(perft.status, 0) << fen;
        ASSERT_EQ(perft.lines.size(), expected.size() + 3) << fen;
        std::vector<std::string> split(perft.lines.begin(), perft.lines.end() - 3);
        std::ranges::sort(split);
        std::ranges::sort(expected);
        EXPECT_EQ(split, expected) << fen;
        EXPECT_EQ(numberOf(perft.lines.end()[-3], "Nodes: "), naivePerft(board, 3)) << fen;
        numberOf(perft.lines.end()[-2], "Time: ");
        numberOf(perft.lines.end()[-1], "Nodes per second: ");
    }
}

TEST(Perft, TakesAPositionInEveryForm) {
    std::vector<std::string> words = {"r3k3/1p1p1p2/8/P1P1P1Pp/8/8/3K4/R7", "w", "q", "h6", "0"};
    EXPECT_EQ(run(PERFT, words).lines.front(), "Nodes: 1");
    words.back() = "2";
    const std::size_t moves = NaiveBoard(SHARP_FEN).getLegalMoves().size();
    EXPECT_EQ(run(PERFT, words).lines.size(), moves + 3);
    EXPECT_EQ(run(PERFT, {"startpos", "2"}).lines.at(20), "Nodes: 400");
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
             BadInput{BENCH, {"--depth", "21"}, "from 1 to 20"},
             BadInput{BENCH, {"--depth=three"}, "not \"three\""},
             BadInput{BENCH, {"--depth"}, "--depth needs a value"},
             BadInput{BENCH, {"--hash", "513"}, "from 0 to 512"},
             BadInput{BENCH, {"--hash", "-1"}, "from 0 to 512"},
             BadInput{BENCH, {"--fast"}, "unknown option --fast"},
             BadInput{BENCH, {"startpos"}, "no \"startpos\""},
             BadInput{PERFT, {}, "a position and a depth"},
             BadInput{PERFT, {"3"}, "a position and a depth"},
             BadInput{PERFT, {"startpos", "deep"}, "not \"deep\""},
             BadInput{PERFT, {"startpos", "-1"}, "from 0 to 12"},
             BadInput{PERFT, {"startpos", "13"}, "from 0 to 12"},
             BadInput{PERFT, {"startpos", "--split", "3"}, "unknown option --split"},
             BadInput{PERFT, {"endpos", "3"}, "four fields"},
             BadInput{PERFT, {noKing, "3"}, "not exactly one king"},
             BadInput{PERFT, {"", "3"}, "four fields"},
         }) {
        const Outcome bad = run(input.path, input.arguments);
        EXPECT_EQ(bad.status, 2) << input.reason;
        EXPECT_TRUE(bad.lines.empty()) << input.reason;
        EXPECT_NE(bad.errors.find(input.reason), std::string::npos) << bad.errors;
        EXPECT_TRUE(bad.errors.starts_with("kestran-")) << bad.errors;
        EXPECT_EQ(bad.errors.find('\n'), bad.errors.size() - 1) << bad.errors;
    }
}

TEST(Tools, TellHowToUseThem) {
    for (const std::string& path : {BENCH, PERFT}) {
        const Outcome help = run(path, {"--depth", "--help"});
        EXPECT_EQ(help.status, 0);
        EXPECT_EQ(help.errors, "");
        ASSERT_FALSE(help.lines.empty());
        EXPECT_TRUE(help.lines.front().starts_with("Usage: ")) << help.lines.front();
    }
}

// In a repository of its own, with a bench that always says 7.
TEST(CheckBench, ComparesWithTheLastSignatureOfTheHistory) {
    const auto root = std::filesystem::path(KESTRAN_TEST_DATA).parent_path().parent_path();
    const std::string script = R"(
        folder=$(mktemp -d) && trap 'rm -rf "$folder"' EXIT && mkdir "$folder/tools" &&
        cp "$0" "$folder/tools/check-bench" && cd "$folder" && git init -q . || exit
        commit() { git -c user.name=n -c user.email=e commit -q --allow-empty -m "$1"; }
        check() { tools/check-bench ./bench > /dev/null 2>&1; echo "$1: $?"; }
        printf '#!/bin/sh\necho 1 depth 2\necho Bench: 7\n' > bench && chmod +x bench
        commit 'Begin';                                      check none
        commit $'Add the bench\n\nWhy so.\nBench: 7';        check same
        commit $'Tidy up Bench: 9\n\nNo functional change';  check kept
        commit $'Search less\n\nBench: 77';                  check differs
        rm bench;                                            check missing)";
    const Outcome checks = run("/bin/bash", {"-c", script, root / "tools/check-bench"});
    EXPECT_EQ(checks.lines, (std::vector<std::string>{"none: 0", "same: 0", "kept: 0", "differs: 1",
                                                      "missing: 2"}))
        << checks.errors;
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
    EXPECT_THROW(commandLineOf({"--size"}).takeOption("--size"), UsageError);
    EXPECT_THROW(commandLineOf({"one", "--two"}).takeRest(), UsageError);
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
