// Conversations with kestran-modern.

#include "support/uciProcess.h"
#include "testing/boardSupport.h"
#include "testing/readUntil.h"
#include "testing/regex.h"
#include "testing/toolSupport.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <iterator>

namespace {

constexpr const char* QUIET_FEN = "6k1/pp3p1p/2p2np1/3r4/3N4/1PR3P1/P4P1P/6K1 w - - 0 1";

const std::string NAME = "id name Kestran Modern " KESTRAN_VERSION;
const std::string MODERN = KESTRAN_BINARY_DIR "/kestran-modern";

class Modern : public testing::Test {
protected:
    // Reads lines up to the next answer and checks that all others are reports.
    std::vector<std::string> hearAnswer() {
        static const TextPattern REPORT(
            "info depth \\d+ seldepth \\d+ multipv \\d+ score (cp|mate) -?\\d+"
            " nodes \\d+ nps \\d+ hashfull \\d+ time \\d+( pv( [a-h1-8]{4}[qrbn]?)+)?"
            "|info depth \\d+ currmove [a-h1-8]{4}[qrbn]? currmovenumber \\d+");
        std::vector<std::string> lines = process.readUntil("bestmove", PATIENCE);
        for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
            EXPECT_TRUE(REPORT.matches(lines[i])) << lines[i];
        }
        EXPECT_GE(lines.size(), 2U);
        lines.resize(std::max<std::size_t>(lines.size(), 2));
        return lines;
    }
    std::vector<std::string> answerTo(const std::string& words, const std::string& fen) {
        process.send("position fen " + fen);
        process.send(words);
        return hearAnswer();
    }

    UciProcess process{MODERN};
};

TEST_F(Modern, GreetsWithItsOptions) {
    process.send("uci");
    const std::vector<std::string> lines = process.readUntil("uciok", PATIENCE);
    EXPECT_EQ(lines, (std::vector<std::string>{
                         NAME, "id author Bremo Talvik",
                         "option name Hash type spin default 16 min 0 max 4096",
                         "option name Threads type spin default 1 min 1 max 1",
                         "option name MultiPV type spin default 1 min 1 max 218",
                         "option name UCI_Elo type spin default 2000 min 700 max 2000",
                         "option name Move Overhead type spin default 10 min 0 max "
                         "5000",
                         "option name UCI_LimitStrength type check default false",
                         "option name Ponder type check default false",
                         "option name OwnBook type check default false",
                         "option name BookFile type string default <empty>",
                         "option name Clear Hash type button", "uciok"}));
    // As strict clients read them.
    const TextPattern OPTION(
        R"(option name \S+( \S+)* type (spin default -?\d+ min -?\d+ max -?\d+|)"
        R"(check default (true|false)|string default \S+|button))");
    for (std::size_t i = 2; i + 1 < lines.size(); ++i) {
        EXPECT_TRUE(OPTION.matches(lines[i])) << lines[i];
    }
}

// A bad value is named on standard error, in one line; the engine goes on.
TEST_F(Modern, NamesABadOptionValue) {
    for (const auto& [line, fault] : std::initializer_list<std::pair<std::string, std::string>>{
             {"name hash value x", "option Hash rejected: \"x\" is not a number\n"},
             {"name Threads value 1.5", "option Threads rejected: \"1.5\" is not a number\n"},
             {"name OwnBook value 1", "option OwnBook rejected: \"1\" is not true or false\n"},
             {"name Threads value 7", ""}, // as the nearest number
             {"name Clear Hash", ""},
             {"name Hash", ""},
             {"name value", ""},
             {"name Unknown value 3", ""},
             {"Hash value 3", ""}}) {
        const std::string before = process.readErrors();
        process.send("setoption " + line);
        process.send("isready");
        ASSERT_EQ(process.readUntil("", PATIENCE).back(), "readyok") << line;
        EXPECT_EQ(process.readErrors(), before + fault) << line;
    }
}

// The last report before the answer, and the answer.
TEST_F(Modern, ObeysEachLimit) {
    struct Case {
        std::string fen, words, report, answer;
    };
    const std::string MATE = "6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1";
    const std::string MATED = "7k/6Q1/6K1/8/8/8/8/8 b - - 0 1";
    const std::string STALE = "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1";
    const std::string CORNER = "7k/8/8/8/8/8/8/K7 w - - 0 1";
    const std::string ONE = "8/8/8/8/8/8/8/K1k5 w - - 0 1";
    for (const auto& [fen, words, report, answer] : std::initializer_list<Case>{
             {QUIET_FEN, "depth 4", "info depth 4 .* cp .*", ".*"},
             {QUIET_FEN, "nodes 10000", "info depth 2 .* nodes 10000 .*", ".*"},
             {QUIET_FEN, "nodes 1", "info depth 0 .* score cp -?[1-9].* nodes 1 .* pv \\S+", ".*"},
             {QUIET_FEN, "searchmoves a2a3 h2h4 h7h8 depth 3", ".* pv (a2a3|h2h4) .*", "a2a3|h2h4"},
             {QUIET_FEN, "searchmoves a2a4 movetime 50", ".* pv a2a4 .*", "a2a4"},
             {QUIET_FEN, "mate 2", "info depth 3 .* cp .*", ".*"},
             {QUIET_FEN, "wtime 3", ".* score cp .*", ".*"},
             {START_FEN, "depth 2", "info depth 2 .*", ".*"},
             {MATE, "mate 1", "info depth 1 .* score mate 1 .*", "a1a8"},
             {MATE, "wtime 9000", "info depth 1 .* score mate 1 .*", "a1a8"},
             // Black is mated by any answer.
             {"7k/R7/6K1/8/8/8/8/8 b - - 0 1", "wtime 9000 btime 9000", ".* score mate -1 .*",
              "h8g8"},
             {MATED, "depth 5", ".* score mate 0 nodes 0 nps 0 hashfull 0 time .*", "\\(none\\)"},
             {MATED, "wtime 9000 btime 9000", ".* score mate 0 .*", "\\(none\\)"},
             {STALE, "movetime 9000", ".* score cp 0 nodes 0 nps 0 hashfull 0 time \\d+",
              "\\(none\\)"},
             {CORNER, "searchmoves a1b1 depth 1", ".* pv a1b1 .*", "a1b1"},
             {CORNER, "searchmoves a1a2 depth 1", ".* pv a1a2 .*", "a1a2"},
             {CORNER, "searchmoves a1b2 depth 1", ".* pv a1b2 .*", "a1b2"},
             {ONE, "wtime 90000", "info depth 1 .* nodes [1-9].* pv a1a2 .*", "a1a2"},
             {ONE, "depth 5", "info depth 5 .* pv a1a2 .*", "a1a2"}}) {
        const std::vector<std::string> lines = answerTo("go " + words, fen);
        EXPECT_TRUE(TextPattern(report).matches(lines[lines.size() - 2]))
            << words << ": " << lines[lines.size() - 2];
        EXPECT_TRUE(TextPattern("bestmove (" + answer + ")( ponder .*)?").matches(lines.back()))
            << words << ": " << lines.back();
    }
}

TEST_F(Modern, StopEndsTheSearchThatIsUnderWayAndNoOther) {
    process.send("position fen " + std::string(QUIET_FEN));
    process.send("go infinite");
    process.send("stop"); // perhaps before its search has begun
    hearAnswer();
    for (const char* words : {"go", "go infinite", "go movetime 100000"}) {
        process.send("stop"); // idle
        process.send(words);
        for (const std::string& line : readUntil(process, "bestmove", UciProcess::Timeout(150))) {
            EXPECT_TRUE(line.starts_with("info ")) << words << ": " << line;
        }
        process.send("isready");
        EXPECT_EQ(readUntil(process, "readyok", PATIENCE).back(), "readyok");
        process.send("stop");
        hearAnswer();
    }
}

// The last report has the counts of the whole search, not those of the last pass.
TEST_F(Modern, ReportsTheCountsOfTheWholeSearchLast) {
    static const TextPattern COUNTS(R"(.* nodes (\d+) nps (\d+) hashfull \d+ time (\d+) .*)");
    const auto countsIn = [](const std::string& line) {
        std::vector<long> counts;
        for (const std::string& part : COUNTS.match(line).value_or(TextPattern::Parts(4, "-1"))) {
            counts.push_back(std::strtol(part.c_str(), nullptr, 10));
        }
        return counts;
    };
    constexpr int MILLIS = 300;
    process.send("position fen " + std::string(QUIET_FEN));
    process.send("go infinite");
    auto reports = readUntil(process, "info", PATIENCE);
    ASSERT_EQ(reports.size(), 1U);
    std::ranges::copy(readUntil(process, "bestmove", UciProcess::Timeout(MILLIS)),
                      std::back_inserter(reports));
    process.send("stop");
    const auto answer = hearAnswer();
    const auto last = countsIn(answer[answer.size() - 2]);
    EXPECT_GE(last[1], countsIn(reports.back())[1]);
    EXPECT_GE(last[3], MILLIS - 1); // both ends of the search are rounded down
    EXPECT_EQ(last[2], last[1] * 1000 / last[3]);
}

TEST_F(Modern, PlaysTheBookOnRequest) {
    process.send("setoption name OwnBook value true");
    EXPECT_EQ(answerTo("go movetime 5000", START_FEN).size(), 2U) << "answered at once";
    EXPECT_GT(answerTo("go depth 3", START_FEN).size(), 3U) << "a search without time";
    EXPECT_TRUE(
        answerTo("go searchmoves a2a3 movetime 50", START_FEN).back().starts_with("bestmove a2a3"));
}

// The first four reports of a search, as "depth|score|nodes|line|".
std::vector<std::string> countsOf(const std::string& program, const TextPattern& report,
                                  const std::vector<std::size_t>& groups) {
    UciProcess process(program);
    process.send("position fen " + std::string(QUIET_FEN));
    process.send("go infinite");
    std::vector<std::string> counts;
    while (counts.size() < 4) {
        const auto line = process.readLine(PATIENCE);
        const auto parts = line ? report.match(*line) : std::nullopt;
        if (!parts) {
            return {};
        }
        std::string& text = counts.emplace_back();
        for (const std::size_t group : groups) {
            text.append(parts->at(group)).append(1, '|');
        }
    }
    return counts;
}

TEST(ModernSearch, IsThatOfTheEngine) {
    const auto counts = countsOf(
        MODERN, TextPattern(R"(info depth (\d+) .* score cp (\S+) nodes (\d+) .* pv (.*))"),
        {1, 2, 3, 4});
    EXPECT_EQ(counts, countsOf(KESTRAN_BINARY_DIR "/kestran",
                               TextPattern("info pv (.*) score cp (\\S+) depth (\\d+) .*"
                                           " nodes (\\d+) .*"),
                               {3, 2, 4, 1}));
    EXPECT_EQ(counts.size(), 4U);
}

} // namespace
