#include "search/ida.h"

#include "explain/treeGeneratorDebug.h"
#include "search/idaVariant.h"
#include "testing/searchSupport.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

// Delays a search until root moves are reported, and counts them.
class DelayingListener final : public InfoListenerInterface {
public:
    void onInfo(const InfoStruct& /*info*/) override { sleepMilliseconds(TIME_TO_FIRST_ROOT_MOVE); }
    void onCurrentMove(const CurrentMove& /*current*/) override { ++rootMoves; }

    int rootMoves = 0;
};

class Deepening : public testing::Test {
protected:
    Deepening() {
        ida.setInfoListener(&reports);
        initial.extend(Variant(), {moveOf(start, "h2h4"), false, false, false});
    }

    // The search to a depth, without the book.
    SearchResult searchTo(int depth, const Position& position) {
        return ida.generateTree(requestFor(position, limitsOf(depth)));
    }

    // The infinite search of a position, whose flag is up from the start if `isStopped`.
    void searchInfinitely(const Position& position, bool isStopped) {
        const int number = openSlot();
        if (isStopped) {
            slot.signalReady(number);
        }
        SearchLimits limits;
        limits.time.infinite = true;
        ida.generateTree(requestFor(position, limits), number, slot);
    }

    // Opens a search in the slot, with `initial` published.
    int openSlot() {
        const int number = slot.getNextThreadId();
        slot.setVariant(initial, number);
        return number;
    }

    EngineConfig config = makeConfig();
    Ida ida{config};
    TreeGenerator& generator = ida.getTreeGenerator();
    IdaVariant slot;
    Reports reports;
    Position start = positionOf(START_FEN);
    Variant initial;
};

TEST_F(Deepening, RunsTwentyPassesAtMost) {
    const Position drawn = positionOf("7k/8/6K1/8/8/8/8/R7 w - - 100 90");
    searchTo(22, drawn);
    EXPECT_EQ(reports.lines, std::vector<std::string>(20));

    // Empty lines leave the published move alone.
    searchInfinitely(drawn, false);
    EXPECT_EQ(reports.lines.size(), 40U);
    EXPECT_TRUE(slot.isReady());
    EXPECT_EQ(movesTextOf(slot.getResult().line), " h2h4");
}

// But for the moves that a cleared table still hints at.
TEST_F(Deepening, BeginsWithoutTheScoresAndKillersOfTheSearchBefore) {
    SearchState& state = generator.state;
    const auto killers = [&state] {
        int count = 0;
        for (int place = 0; place < 2 * MoveOrder::KILLER_PLIES; ++place) {
            count += state.order.getActualKiller(place) != 0 ? 1 : 0;
        }
        return count;
    };
    const auto isStartKnown = [&] {
        return state.table.getHashTable().getEntry(start.incremental.hash).state != FREE;
    };
    searchTo(3, start);
    EXPECT_TRUE(isStartKnown());
    EXPECT_GT(killers(), 0);
    searchTo(1, positionOf("7k/8/6K1/8/8/8/8/R7 w - - 100 90")); // of no move
    EXPECT_FALSE(isStartKnown());
    EXPECT_EQ(killers(), 0);
}

TEST_F(Deepening, ReportsOnlyADepthThatCanBeReached) {
    for (const auto& [setting, selDepth] :
         {std::pair{10, 11}, {60, 31}, {std::numeric_limits<int>::max(), 31}}) {
        config.quiscenceMaxDepth = setting;
        searchTo(1, start);
        EXPECT_EQ(reports.infos.back().selDepth, selDepth);
    }
    SearchRequest request = requestFor(start, limitsOf(1));
    request.limits.quiscenceDepth = 0;
    ida.generateTree(request);
    EXPECT_EQ(reports.infos.back().selDepth, 1);
}

TEST_F(Deepening, AbandonedPassIsNoResult) {
    // Passes 1 and 2 end before the flag is polled, pass 3 in a narrow window does not.
    searchInfinitely(start, true);
    EXPECT_EQ(reports.lines, (std::vector<std::string>{" d2d4 d7d5", " d2d4 d7d5 e2e4"}));
    EXPECT_EQ(movesTextOf(slot.getResult().line), reports.lines.back());

    // Here the first pass is long. Its score then looks like a mate.
    reports.lines.clear();
    searchInfinitely(positionOf("6Q1/1q1pp2q/2P4P/Qq4P1/K7/pP6/5pk1/Q7 w - - 7 4"), true);
    EXPECT_TRUE(generator.state.nodes.isAbandoned());
    EXPECT_TRUE(reports.lines.empty());
    EXPECT_EQ(movesTextOf(slot.getResult().line), " h2h4");

    // A pass of its own has no result, keeps the window and takes back its moves.
    Explain observer; // whose record has one pass more than have ended
    ida.watchBy(observer);
    SearchRequest request = requestFor(start, limitsOf(4));
    slot.signalReady(openSlot());
    ida.prepareSearch(request, &slot);
    Variant unfinished;
    const RootWindow window = {-550, 550};
    const SearchPass pass =
        ida.generateTreeIdaOneLoop(request.game.position, unfinished, 4, window, true);
    EXPECT_EQ(pass.result, std::nullopt);
    EXPECT_EQ(pass.next, window);
    EXPECT_EQ(slot.getResult().nodes, pass.nodes);
    EXPECT_EQ(observer.getData().size(), 1U);
    EXPECT_EQ(findDifference(request.game.position, start), "");

    // The depth search ignores the flag of an older search, and a node limit ends it.
    searchTo(4, start);
    EXPECT_EQ(reports.lines.size(), 4U);
    EXPECT_GE(observer.getData().size(), 5U);
    request.limits.nodes = 5000;
    const SearchResult limited = ida.generateTree(request);
    EXPECT_EQ(limited.report.value().depth, 2);
    EXPECT_EQ(generator.state.nodes.getSearchedAllNodes(), 5000);
    EXPECT_EQ(limited.nodes, 5000);
}

// A node limit puts a poll at the first or the second move of the second pass.
TEST_F(Deepening, ReportsARootMoveOnceItIsTried) {
    const std::int64_t nodes = searchTo(1, start).nodes;
    SearchLimits limits = limitsOf(2);
    limits.time.infinite = true;
    for (const int further : {1, 2}) {
        DelayingListener listener;
        ida.setInfoListener(&listener);
        limits.nodes = nodes + further;
        ida.generateTree(requestFor(start, limits), openSlot(), slot);
        EXPECT_EQ(listener.rootMoves, further - 1);
    }
}

TEST_F(Deepening, TimeUpWeighsTheLastPassAgainstTheTimeLeft) {
    // In units that make the noise of the clock not matter.
    constexpr Milliseconds S = 1000000;
    constexpr double FIRST = -1;
    struct Case {
        Milliseconds total, elapsed;
        double lastDuration;
        Milliseconds sinceLastCheck;
        IdaNS::GeneratingResult result;
        bool isUp;
        double nextDuration;
    };
    for (const Case& c :
         std::initializer_list<Case>{// total, elapsed, last duration, since the last check,
                                     // result; time is up or not, next duration
                                     {10 * S, 6 * S, FIRST, 0, IdaNS::OK_FINISH, false, 6 * S},
                                     {10 * S, 7 * S, FIRST, 0, IdaNS::OK, true, 7 * S},
                                     {10 * S, 9 * S, 5 * S, 1 * S, IdaNS::OK, false, 1 * S},
                                     {10 * S, 9 * S, 4 * S, 5 * S, IdaNS::OK, true, 5 * S},
                                     {10 * S, 9 * S, 4 * S, 5 * S, IdaNS::FAILLOW, false, 4 * S},
                                     {10 * S, 11 * S, 4 * S, 5 * S, IdaNS::FAILHIGH, true, 4 * S},
                                     {-1, 5, FIRST, 0, IdaNS::FAILHIGH, true, FIRST}}) {
        openSlot();
        const Milliseconds now = clockMilliseconds();
        double lastDuration = c.lastDuration;
        Milliseconds lastCheck = now - c.sinceLastCheck;
        const auto isUp = [&] {
            return ida.timeUp(c.total, lastDuration, lastCheck, now - c.elapsed, c.result, slot);
        };
        EXPECT_EQ(isUp(), c.isUp) << c.elapsed;
        EXPECT_NEAR(lastDuration, c.nextDuration, 1e5) << c.elapsed;
        slot.signalReady(openSlot());
        EXPECT_TRUE(isUp());
    }
}

TEST_F(Deepening, SlotObeysOnlyItsPresentSearch) {
    const int oldNumber = openSlot();
    slot.signalReady(oldNumber);
    EXPECT_TRUE(slot.isReady());
    const int number = slot.getNextThreadId();
    EXPECT_NE(number, oldNumber);
    EXPECT_FALSE(slot.isReady());
    Variant late;
    late.clear(5);
    slot.setVariant(late, oldNumber);
    slot.setReport(InfoStruct(), oldNumber);
    EXPECT_FALSE(slot.getResult().report);
    slot.signalReady(oldNumber);
    EXPECT_FALSE(slot.isReady());
    EXPECT_EQ(movesTextOf(slot.getResult().line), " h2h4");
    slot.setVariant(late, number);
    EXPECT_EQ(slot.getResult().line.varLength, 0);
    EXPECT_EQ(slot.getResult().line.evaluation, 5);
}

} // namespace
