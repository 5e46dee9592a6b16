// Conversations with kestran-modern.

#include "support/uciProcess.h"
#include "testing/boardSupport.h"
#include "testing/readUntil.h"
#include "testing/regex.h"
#include "testing/toolSupport.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
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
        std::vector<std::string> lines = readUntil(process, "bestmove", PATIENCE);
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
    const std::vector<std::string> lines = readUntil(process, "uciok", PATIENCE);
    EXPECT_EQ(lines, (std::vector<std::string>{
                         NAME, "id author Bremo Talvik",
                         "option name Hash type spin default 16 min 0 max 4096",
                         "option name Threads type spin default 1 min 1 max 1",
                         "option name MultiPV type spin default 1 min 1 max 218",
                         "option name UCI_Elo type spin default 2000 min 300 max 2000",
                         "option name Move Overhead type spin default 10 min 0 max 5000",
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
        ASSERT_EQ(readUntil(process, "", PATIENCE).back(), "readyok") << line;
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
             {MATE, "searchmoves a1a2 h7h8 a1a8 depth 1", ".* score mate 1 .*", "a1a8"},
             {QUIET_FEN, "searchmoves a2a4 movetime 50", ".* pv a2a4 .*", "a2a4"},
             {QUIET_FEN, "mate 2", "info depth 3 .* cp .*", ".*"},
             {QUIET_FEN, "wtime 3", ".* score cp .*", ".*"},
             {START_FEN, "depth 1", "info depth 1 .* pv d2d4 d7d5", "d2d4 ponder d7d5"},
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

// Commands that are not in the protocol. A bad number is named on standard error.
TEST_F(Modern, ObeysCommandsForPeople) {
    process.send("position fen 4k3/8/8/8/4r3/8/8/4K3 w - - 0 1");
    const auto linesOf = [this](const std::string& line) {
        process.send(line);
        process.send("isready");
        std::vector<std::string> lines = readUntil(process, "readyok", PATIENCE);
        lines.pop_back();
        return lines;
    };
    const auto has = [](const std::vector<std::string>& lines, const std::string& wanted) {
        return std::ranges::find(lines, wanted) != lines.end();
    };
    const std::vector<std::string> described = linesOf("d");
    EXPECT_TRUE(has(described, "Fen: 4k3/8/8/8/4r3/8/8/4K3 w - - 0 1"));
    EXPECT_TRUE(has(described, "Checkers: e4"));
    const std::vector<std::string> terms = linesOf("eval");
    EXPECT_TRUE(has(terms, "material             0    5000"));
    EXPECT_TRUE(has(terms, "Score for the side to move: -5000"));
    process.send("position fen 8/8/4R3/4k3/8/8/8/B3K3 b - - 0 1");
    EXPECT_TRUE(has(linesOf("d"), "Checkers: a1 e6"));
    const std::vector<std::string> termsOfBlack = linesOf("eval");
    EXPECT_TRUE(has(termsOfBlack, "bishop pair          0       0"));
    EXPECT_TRUE(has(termsOfBlack, "Score for the side to move: -8102"));
    process.send("position fen 4k3/8/8/8/8/8/8/B3KB2 b - - 0 1");
    const std::vector<std::string> unmoved = linesOf("eval");
    process.send(
        "position fen 3k4/8/8/8/8/8/8/BB1K4 b - - 0 1 moves d8e8 d1e1 e8f8 b1d3 f8e8 d3f1");
    EXPECT_EQ(linesOf("eval"), unmoved) << "pieces that have left their squares";
    process.send("position fen 4k3/8/8/8/4r3/8/8/4K3 w - - 0 1");
    process.send("go perft 2");
    EXPECT_EQ(readUntil(process, "Nodes searched", PATIENCE),
              (std::vector<std::string>{"e1d1: 18", "e1f1: 18", "e1f2: 18", "e1d2: 18",
                                        "Nodes searched: 72"}));
    process.send("bench 1"); // in fewer nodes than the bench needs by default
    EXPECT_TRUE(
        TextPattern("\\d{6} nodes \\d+ nps").matches(process.readLine(PATIENCE).value_or("")));
    for (const char* line : {"go perft", "go perft 0", "go perft x", "bench 21", "bench -1"}) {
        const std::string before = process.readErrors();
        EXPECT_TRUE(linesOf(line).empty()) << line;
        EXPECT_TRUE(TextPattern("(go perft|bench) rejected: needs a depth from 1 to 20\n")
                        .matches(process.readErrors().substr(before.size())))
            << line;
    }
    const std::string rejections = process.readErrors();
    for (const char* line : {"go perft 20", "bench 20"}) { // would take for ever
        process.send(line);
        process.send("d"); // is answered meanwhile
        EXPECT_EQ(readUntil(process, "Checkers", PATIENCE).back(), "Checkers: e4");
        process.send("stop");
        EXPECT_EQ(answerTo("go depth 1", START_FEN).back().substr(0, 9), "bestmove ");
        EXPECT_EQ(process.readErrors(), rejections);
        process.send("position fen 4k3/8/8/8/4r3/8/8/4K3 w - - 0 1");
    }
    process.send("go perft 20");
    process.send("quit");
    EXPECT_EQ(process.waitForEnd(PATIENCE)->status, 0);
}

#ifndef KESTRAN_SLOW_BUILD // a sanitizer needs more memory than there is
TEST(ModernBench, PrintsNoNumberWithoutMemory) {
    UciProcess process("/bin/bash", {"-c", "ulimit -v 40000; exec \"$0\" bench 1", MODERN});
    EXPECT_EQ(process.readLine(PATIENCE), std::nullopt);
    EXPECT_EQ(process.readErrors(), "bench failed: not enough memory\n");
}
#endif

// The best of some tries, as the machine may be busy.
TEST_F(Modern, AnswersAStopWithinFiveMilliseconds) {
    using Clock = std::chrono::steady_clock;
    Clock::duration best = Clock::duration::max();
    for (int i = 0; i < 20; ++i) {
        process.send("go infinite");
        readUntil(process, "info depth 3", PATIENCE);
        const Clock::time_point start = Clock::now();
        process.send("stop");
        readUntil(process, "bestmove", PATIENCE);
        best = std::min(best, Clock::now() - start);
    }
    EXPECT_LT(best, std::chrono::milliseconds(5));
}

TEST_F(Modern, ReportsTheTableAndTheRootMoves) {
    process.send("go movetime 1800");
    const std::vector<std::string> lines = hearAnswer();
    const TextPattern CURRENT(R"(info depth \d+ currmove (\S+) currmovenumber (\d+))");
    const auto isCurrent = [&](const std::string& line) { return CURRENT.matches(line); };
    EXPECT_TRUE(std::ranges::any_of(lines, isCurrent));
    process.send("go movetime 700"); // no longer than a second
    EXPECT_TRUE(std::ranges::none_of(hearAnswer(), isCurrent));
    process.send("setoption name Hash value 1");
    const TextPattern FULL(".* hashfull [1-9].*");
    EXPECT_TRUE(FULL.matches(answerTo("go movetime 700", START_FEN).end()[-2]));
    process.send("setoption name Hash value 0");
    const TextPattern EMPTY(".* hashfull 0 .*");
    EXPECT_TRUE(EMPTY.matches(answerTo("go movetime 700", START_FEN).end()[-2]));
}

TEST_F(Modern, ReportsSeveralLines) {
    process.send("setoption name MultiPV value 3");
    const std::vector<std::string> lines = answerTo("go depth 3", QUIET_FEN);
    const TextPattern LINE(R"(info depth (\d+) .* multipv (\d+) .* pv (\S+).*)");
    ASSERT_EQ(lines.size(), 11U); // the last report, with all counts, and the answer
    for (std::size_t i = 0; i < 9; ++i) {
        const auto parts = LINE.match(lines[i]);
        ASSERT_TRUE(parts) << lines[i];
        EXPECT_EQ(parts->at(1), std::to_string(i / 3 + 1));
        EXPECT_EQ(parts->at(2), std::to_string(i % 3 + 1));
        for (std::size_t before = i - i % 3; before < i; ++before) {
            EXPECT_NE(LINE.match(lines[before])->at(3), parts->at(3));
        }
    }
    EXPECT_EQ(LINE.match(lines[9])->at(2), "1");
}

// One that begins to ponder and does something next, in each state.
TEST_F(Modern, Ponders) {
    const std::string MATE = "6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1";
    struct Case {
        std::string fen, go, then;
    };
    for (const auto& [fen, go, then] : std::initializer_list<Case>{
             {QUIET_FEN, "go ponder wtime 3000 btime 3000", "ponderhit"},
             {QUIET_FEN, "go wtime 3000 btime 3000 ponder", "ponderhit"},
             {QUIET_FEN, "go ponder movetime 100", "ponderhit"},
             {QUIET_FEN, "go ponder depth 2", "ponderhit"},
             {QUIET_FEN, "go ponder wtime 900000 btime 900000", "stop"},
             {QUIET_FEN, "go ponder", "stop"},
             // The search is over before the opponent has moved.
             {MATE, "go ponder wtime 900000 btime 900000", "ponderhit"},
             {MATE, "go ponder wtime 900000 btime 900000", "stop"},
             {"7k/R7/6K1/8/8/8/8/8 b - - 0 1", "go ponder wtime 900000 btime 900000", "ponderhit"},
         }) {
        process.send("position fen " + fen);
        process.send(go);
        for (const std::string& line : readUntil(process, "bestmove", UciProcess::Timeout(150))) {
            EXPECT_TRUE(line.starts_with("info ")) << go << ": " << line;
        }
        process.send(then);
        hearAnswer();
    }
    process.send("ponderhit"); // idle, and in an ordinary search
    process.send("position startpos");
    process.send("go movetime 300");
    process.send("ponderhit");
    EXPECT_TRUE(TextPattern("bestmove (\\S+) ponder (\\S+)").matches(hearAnswer().back()));
    // After the hit the time runs, and a stop still counts.
    process.send("go ponder wtime 900000 btime 900000");
    process.send("ponderhit");
    process.send("stop");
    hearAnswer();
    // The hit of a search that waits for the one before it.
    process.send("go infinite");
    process.send("go ponder movetime 50");
    process.send("ponderhit");
    process.send("stop");
    hearAnswer();
    hearAnswer();
    EXPECT_EQ(process.readErrors(), "");
}

// The end of input and `quit`, while it ponders and after the hit.
TEST(ModernPondering, EndsWithTheInput) {
    for (const bool isHit : {false, true}) {
        for (const bool isQuit : {false, true}) {
            UciProcess process(MODERN);
            process.send("go ponder wtime 4000 btime 4000");
            readUntil(process, "info", PATIENCE);
            if (isHit) {
                process.send("ponderhit");
            }
            isQuit ? void(process.send("quit")) : process.closeInput();
            const std::vector<std::string> rest = readUntil(process, "bestmove", PATIENCE);
            EXPECT_EQ(!rest.empty() && rest.back().starts_with("bestmove"), !isQuit);
            EXPECT_EQ(process.waitForEnd(PATIENCE)->status, 0);
        }
    }
}

// Every option of the bot's configuration, even in a comment, exists and is accepted.
TEST_F(Modern, AcceptsTheOptionsOfTheBot) {
    process.send("uci");
    const std::vector<std::string> greeting = readUntil(process, "uciok", PATIENCE);
    std::ifstream file(KESTRAN_TEST_DATA "/../../docs/lichess-bot.yml");
    const TextPattern OPTION(R"( {4}(?:# )?([A-Z][^:]*): ([^#]*\S)( *#.*)?)");
    bool isInside = false;
    int options = 0;
    for (std::string line; std::getline(file, line);) {
        isInside = line.starts_with("  uci_options:") || (isInside && line.starts_with("    "));
        if (const auto parts = OPTION.match(line); isInside && parts) {
            ++options;
            EXPECT_TRUE(std::ranges::any_of(greeting, [&](const std::string& known) {
                return known.starts_with("option name " + parts->at(1) + " type ");
            })) << line;
            process.send("setoption name " + parts->at(1) + " value " + parts->at(2));
        }
    }
    EXPECT_GE(options, 5);
    EXPECT_TRUE(answerTo("go nodes 1000", START_FEN).back().starts_with("bestmove "));
    EXPECT_EQ(process.readErrors(), "");
}

TEST_F(Modern, PlaysABookOfTheUser) {
    const TextFile book("a2a3 a7a6\n");
    process.send("setoption name OwnBook value true");
    process.send("setoption name BookFile value " + book.path);
    EXPECT_EQ(answerTo("go movetime 5000", START_FEN).back(), "bestmove a2a3");
    process.send("setoption name BookFile value <empty>");
    EXPECT_EQ(process.readErrors(), "");
    for (const auto& [path, fault] :
         {std::pair("/no/book", "cannot open"), {"/etc/passwd", "no book line in"}}) {
        process.send(std::string("setoption name BookFile value ") + path);
        EXPECT_NE(answerTo("go movetime 5000", START_FEN).back(), "bestmove a2a3");
        EXPECT_TRUE(process.readErrors().ends_with(std::string("option BookFile rejected: ") +
                                                   fault + " \"" + path + "\"\n"));
    }
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
