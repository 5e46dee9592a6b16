// The front end for current chess programs: what it reads from a line, and what it answers without
// a pass.

#include "uci/modernPolicy.h"

#include "base/cppIoUtils.h"
#include "search/searchParameters.h"
#include "testing/boardSupport.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace {

constexpr Milliseconds ARRIVAL = 12345;
constexpr Milliseconds UNLIMITED = TimeBudget::UNLIMITED;

TEST(ModernPolicy, ReadsTheLimitsOfALine) {
    struct Case {
        std::string words;
        Milliseconds total;
        bool infinite = false;
        int depth = MAX_PASSES;
        std::int64_t nodes = SearchLimits::ANY_NODES;
    };
    ModernPolicy policy;
    const Position position = positionOf(START_FEN);
    for (const auto& [words, total, infinite, depth, nodes] : std::initializer_list<Case>{
             // The overhead is taken from the clock; no budget exceeds what is left.
             {"wtime 35010 btime 1", 2500},
             {"wtime 35010 winc 500 btime 1 binc 1", 4000},
             {"wtime 110 winc 500", 50},
             {"wtime 35010 movestogo 40", 2500},
             {"wtime 1010 movestogo 5", 500},
             {"wtime 1010 movestogo 1", 1000},
             {"wtime 110", 10}, // at least a pass or two
             {"wtime -50 winc 10", 0},
             {"btime 60000", 0}, // only the clock of the opponent
             {"movetime 300", 300},
             {"movetime 300 wtime 110", 10},
             {"movetime -7", 0},
             // Limits other than time.
             {"", UNLIMITED, true},
             {"ponder", UNLIMITED, true},
             {"depth 6", UNLIMITED, false, 6},
             {"depth 99", UNLIMITED, false, MAX_PASSES},
             {"depth x", UNLIMITED, true},
             {"infinite depth 6", UNLIMITED, false, 6},
             {"infinite wtime 35010", UNLIMITED, true},
             {"mate 3", UNLIMITED, false, 5},
             {"mate 9999999999 depth 3", UNLIMITED, false, 3},
             {"nodes 99999999999", UNLIMITED, false, MAX_PASSES, 99999999999},
             {"wtime 35010 depth 4 nodes 7", 2500, false, 4, 7}}) {
        const auto limits = policy.readGo(splitString("go " + words), position, ARRIVAL);
        ASSERT_TRUE(limits) << words;
        EXPECT_EQ(limits->time.start, ARRIVAL);
        EXPECT_EQ(limits->time.total, total) << words;
        EXPECT_EQ(limits->time.infinite, infinite) << words;
        EXPECT_EQ(limits->time.skipsHopelessPasses,
                  words.starts_with("wtime") || words.starts_with("btime"))
            << words;
        EXPECT_EQ(limits->depth, depth) << words;
        EXPECT_EQ(limits->nodes, nodes) << words;
        EXPECT_FALSE(limits->useBook) << words;
    }
    const auto ofBlack = policy.readGo(splitString("go wtime 1 winc 1 btime 35010 binc 500"),
                                       positionAfterMoves("e2e4"), ARRIVAL);
    EXPECT_EQ(ofBlack->time.total, 4000);
    policy.setOption(splitString("setoption name move overhead value 1010"));
    policy.setOption(splitString("setoption name OWNBOOK value True"));
    policy.setOption(splitString("setoption name OwnBook value 0")); // rejected
    const auto limits = policy.readGo(splitString("go wtime 36010"), position, ARRIVAL);
    EXPECT_EQ(limits->time.total, 2500);
    EXPECT_TRUE(limits->useBook);
    EXPECT_EQ(policy.setOption(splitString("setoption name hash value 7")), 7);
    EXPECT_EQ(policy.setOption(splitString("setoption name Hash")), std::nullopt);
}

TEST(ModernPolicy, LimitsTheStrength) {
    ModernPolicy policy;
    const auto limitsOf = [&](const std::string& words) {
        return *policy.readGo(splitString(words), positionOf(START_FEN), ARRIVAL);
    };
    policy.setOption(splitString("setoption name UCI_Elo value 1590"));
    EXPECT_EQ(limitsOf("go").nodes, SearchLimits::ANY_NODES);
    policy.setOption(splitString("setoption name UCI_LimitStrength value true"));
    EXPECT_EQ(limitsOf("go").nodes, 300000);
    EXPECT_EQ(limitsOf("go").quiscenceDepth, MAX_QUISCENCE_DEPTH);
    EXPECT_EQ(limitsOf("go nodes 70").nodes, 70);
    policy.setOption(splitString("setoption name UCI_Elo value 1"));
    EXPECT_EQ(limitsOf("go").quiscenceDepth, 0);
    for (std::size_t i = 1; i < LEVELS.size(); ++i) { // each stronger than the one before
        EXPECT_GT(LEVELS[i].rating, LEVELS[i - 1].rating);
        EXPECT_GE(LEVELS[i].nodes, LEVELS[i - 1].nodes);
        EXPECT_GE(LEVELS[i].quiscenceDepth, LEVELS[i - 1].quiscenceDepth);
    }
}

// The greatest overhead leaves the greatest budget on a long clock, and the least the whole share.
TEST(ModernPolicy, KeepsTheOverheadInItsRange) {
    ModernPolicy policy;
    const Position position = positionOf(START_FEN);
    for (const auto& [value, total] :
         {std::pair{"0", 750}, {"-700", 750}, {"5000", 392}, {"x", 392}, {"6000", 392}}) {
        policy.setOption(splitString(std::string("setoption name Move Overhead value ") + value));
        const auto limits = policy.readGo(splitString("go wtime 10500"), position, ARRIVAL);
        EXPECT_EQ(limits->time.total, total) << value;
    }
}

TEST(ModernPolicy, ScoresAPositionWithoutAPassForTheSideToMove) {
    const ModernPolicy policy;
    for (const auto& [fen, sign] : std::initializer_list<std::pair<std::string, std::string>>{
             {"4k3/8/8/8/8/8/8/3QK3 w - - 0 1", ""},
             {"4k3/8/8/8/8/8/8/3QK3 b - - 0 1", "-"},
             {"3qk3/8/8/8/8/8/8/4K3 w - - 0 1", "-"},
             {"3qk3/8/8/8/8/8/8/4K3 b - - 0 1", ""}}) {
        const std::string report = policy.getAnswerLines({}, {positionOf(fen), {}}).front();
        EXPECT_TRUE(report.starts_with("info depth 0 seldepth 0 multipv 1 score cp " + sign + '9'))
            << report;
    }
}

// The first move is a draw, which leaves none to ponder on.
TEST(ModernPolicy, EndsALineWhereTheGameEnds) {
    const Position drawn = positionOf("7k/8/8/8/8/8/R7/K7 w - - 99 80");
    SearchResult result;
    result.line.varLength = 2;
    result.line.get(0) = {moveOf(drawn, "a2a3"), false, false, false};
    result.line.get(1) = {moveOf(positionAfter(drawn, result.line.get(0).move), "h8g8"), false,
                          false, false};
    const std::vector<std::string> lines = ModernPolicy().getAnswerLines(result, {drawn, {}});
    EXPECT_TRUE(lines.front().ends_with(" pv a2a3")) << lines.front();
    EXPECT_EQ(lines.back(), "bestmove a2a3");
}

} // namespace
