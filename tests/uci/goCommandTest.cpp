// The budget of a search for the words of a `go` line.
#include "uci/goCommand.h"
#include "base/cppIoUtils.h"
#include "notation/fen.h"
#include "testing/frontEndSupport.h"
#include "uci/uciReports.h"

#include <gtest/gtest.h>

#include <tuple>
#include <utility>

namespace {

constexpr Milliseconds START = 12345;

TimeBudget budgetOf(const std::string& words, Color colorToMove) {
    return handleGoCommandProps(splitString("go " + words), colorToMove, START);
}

TEST(GoCommand, GivesTheTimeThatTheFirstRuleFinds) {
    // Words, and the total if White or Black is to move.
    const std::tuple<const char*, Milliseconds, Milliseconds> cases[] = {
        // A clock with an increment, which counts in full.
        {"wtime 60000 btime 60000 winc 2000 binc 0", 3500, 1500},
        {"binc 500 winc 9000 btime 8000 wtime 400000", 19000, 700},
        {"wtime 1000 btime 1000 winc -5 binc -5", -1, -1},
        {"wtime 60000 btime 60000 winc -1 binc -1", 1500, 1500}, // as if not given
        {"wtime 100 winc 5000", 5002, -1},
        // Moves to the next time control.
        {"wtime 60000 btime 60000 movestogo 20", 3000, 3000},
        {"wtime 600 btime 599 movestogo 1", 600, 599},
        {"movestogo 0 wtime 4000", 100, -1},
        {"wtime 24000 movestogo -3", 600, -1},
        {"wtime 39 btime 79", 0, 1},
        // A time for the move comes before any clock.
        {"movetime 500 wtime 1000", 500, 500},
        {"movetime -5 wtime 400000", -5, -5},
        {"movetime -1 wtime 24000", 600, -1}, // as if not given
        // No usable time.
        {"wtime 0 btime 0", -1, -1},
        {"wtime 400000 btime -3000 winc 0 binc 0", 10000, -1},
        {"depth 5", -1, -1},
        {"WTIME 400000 Infinite MoveTime 9000", -1, -1},
        // Words that are no numbers or no keys, and repeated words.
        {"movetime x wtime 400000", 0, 0},
        {"wtime 24000 movetime", 600, -1},
        {"wtime movetime 600", 600, 600},
        {"ponder searchmoves e2e4 nodes 5 mate 3 movetime 600", 600, 600},
        {"movetime 99999999999999999999", 2147483647, 2147483647},
        {"movetime -99999999999", -2147483648, -2147483648}};
    for (const auto& [words, white, black] : cases) {
        for (const auto& [color, total] : {std::pair{WHITE, white}, {BLACK, black}}) {
            const TimeBudget budget = budgetOf(words, color);
            EXPECT_EQ(budget.total, total) << words << ", side " << color;
            EXPECT_EQ(budget.start, START);
            EXPECT_FALSE(budget.infinite) << words;
        }
    }
}

TEST(GoCommand, IsInfiniteWhateverElseItSays) {
    for (const char* words : {"infinite", "wtime 1000 infinite", "infinite movetime 1"}) {
        EXPECT_TRUE(budgetOf(words, WHITE).infinite) << words;
    }
}

TEST(UciReports, ScoreIsInHundredthsOfAPawn) {
    for (const auto& [evaluation, text] :
         {std::pair(1019, "score cp 101"), {-1019, "score cp -101"}, {-9, "score cp 0"}}) {
        EXPECT_EQ(getScoreInfo(evaluation), text);
    }
}

const EngineConfig withoutTable = [] {
    EngineConfig config;
    config.hashTableSize = 0;
    return config;
}();

// In the second game White draws by a repetition, and is lost otherwise.
TEST(UciEngine, SearchesTheGameThatAQueuedGoWasSentFor) {
    UciEngine uciEngine(withoutTable);
    const std::string output = outputOf(
        uciEngine, "position fen 6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 1\ngo infinite\n"
                   "position fen 7k/8/8/8/8/q7/8/7K w - - 10 20 moves h1g1 a3b3 g1h1 b3a3\n"
                   "go movetime 600\nposition startpos\n");
    const std::size_t second = output.find("bestmove");
    EXPECT_NE(output.find("info pv h1g1 score cp 0 depth 1 ", second), std::string::npos) << output;
    EXPECT_NE(output.find("bestmove h1g1\n", second), std::string::npos) << output;
}

// A search thread may finish one more pass while it winds down.
TEST(UciEngine, SendsNoReportOfAnAnsweredSearch) {
    UciEngine uciEngine(withoutTable);
    EXPECT_EQ(outputOf(uciEngine, "position fen k7/8/8/8/8/8/1r6/K7 w - - 0 1\ngo movetime 1\n"),
              "info pv a1b2\nbestmove a1b2\n");
    InfoStruct report{};
    report.number = 1;
    EXPECT_EQ(printed([&] { uciEngine.onInfo(report); }), "");
}

} // namespace
