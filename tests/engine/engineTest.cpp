#include "engine/engine.h"

#include "search/infoStruct.h"
#include "testing/searchSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

// Long enough for any machine, and far below the budgets that must not be used up.
constexpr Milliseconds SOON = 20000;
constexpr Milliseconds LONG_BUDGET = 100000;

// Counts reports, and asks for the end of the search when it was told to.
class Listener final : public InfoListenerInterface, public StopListenerInterface {
public:
    void onInfo(const InfoStruct& /*info*/) override { ++reports; }
    bool checkForStop() override {
        ++polls;
        return stopAfterPolls > 0 && polls >= stopAfterPolls;
    }

    std::atomic<int> reports = 0;
    std::atomic<int> polls = 0;
    std::atomic<int> stopAfterPolls = 0;
};

class EngineGame : public testing::Test {
protected:
    EngineGame() {
        engine.setInfoListener(&listener);
        engine.setStopListener(&listener);
    }

    void playMoves(const std::string& moves) {
        std::istringstream stream(moves);
        for (std::string move; stream >> move;) {
            engine.doMoveLongAlgebraic(move);
        }
    }

    Variant searchFrom(const std::string& fen, Milliseconds milliseconds, bool infinite = false) {
        EXPECT_EQ(engine.init(fen), "");
        const Milliseconds begin = clockMilliseconds();
        const Variant variant = engine.search(milliseconds, infinite);
        EXPECT_LT(clockMilliseconds() - begin, SOON);
        return variant;
    }

    EngineConfig config = makeConfig();
    Engine engine{config};
    Listener listener;
};

const std::string MIDDLE_GAME =
    "r1bqkb1r/ppp2ppp/2n1pn2/3p4/3P1N2/2N1P3/PPP2PPP/R1BQKB1R b KQkq - 0 5";
const std::string MATE_IN_ONE = "7k/8/6K1/8/8/8/8/R7 w - - 0 1";
const std::string ONLY_MOVE = "k7/8/8/8/8/8/1r6/K7 w - - 0 1";
const std::string STALEMATE = "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1";

TEST_F(EngineGame, KeepsTheKeysOfItsPositionsAndSkipsOtherWords) {
    playMoves("g1f3 e2e5 g8f6 xyz a f3g1 f6g8");
    const std::vector<std::uint64_t>& keys = engine.getGame().repetitionHashes;
    ASSERT_EQ(keys.size(), 5U);
    EXPECT_EQ(keys[0], keys[4]);
    EXPECT_EQ(keys[4], engine.getPosition().carried.hash);
    EXPECT_NE(engine.init("8/8/8/8/8/8/8/8 w - - 0 1"), "");
    EXPECT_EQ(keys.size(), 5U);
    engine.init();
    playMoves("e2e4");
    EXPECT_EQ(keys, (std::vector{positionOf(START_FEN).carried.hash,
                                 positionAfter("e2e4").carried.hash}));
}

TEST_F(EngineGame, SearchOnTheCallersThreadFindsTheMove) {
    EXPECT_EQ(engine.init(MATE_IN_ONE), "");
    EXPECT_EQ(LongAlgebraicMove(engine.searchMove().value()).toString(), "a1a8");
    EXPECT_EQ(lineOf(engine.searchDepth(5)), " a1a8");
    EXPECT_EQ(engine.init(STALEMATE), "");
    EXPECT_FALSE(engine.searchMove().has_value());
}

TEST_F(EngineGame, OnlyMoveIsPlayedAtOnceUnlessInfinite) {
    EXPECT_EQ(lineOf(searchFrom(ONLY_MOVE, LONG_BUDGET)), " a1b2");
    EXPECT_EQ(listener.polls, 0);
    EXPECT_EQ(lineOf(searchFrom(ONLY_MOVE, LONG_BUDGET)), " a1b2");
    listener.stopAfterPolls = 2;
    EXPECT_EQ(lineOf(searchFrom(ONLY_MOVE, 0, true)).substr(0, 5), " a1b2");
    EXPECT_EQ(listener.polls, 2);
}

TEST_F(EngineGame, EndsBeforeItsBudgetWhenItHasFinished) {
    EXPECT_EQ(lineOf(searchFrom(MATE_IN_ONE, LONG_BUDGET)), " a1a8");
    EXPECT_EQ(listener.reports, 0);
    const Variant bookMove = searchFrom(START_FEN, LONG_BUDGET);
    ASSERT_EQ(bookMove.varLength, 1);
    EXPECT_TRUE(bookMove.get(0).isOpening);
    EXPECT_EQ(listener.reports, 0);
}

TEST_F(EngineGame, FinishedInfiniteSearchWaitsForStop) {
    listener.stopAfterPolls = 4;
    EXPECT_EQ(lineOf(searchFrom(MATE_IN_ONE, 0, true)), " a1a8");
    EXPECT_EQ(listener.polls, 4);
    EXPECT_EQ(listener.reports, 1);
}

TEST_F(EngineGame, GamesThatAreOverHaveNoMoveOrTheFirst) {
    EXPECT_EQ(searchFrom(STALEMATE, 1000).varLength, 0);
    EXPECT_EQ(searchFrom("7k/5KQ1/8/8/8/8/8/8 b - - 0 1", 1000).varLength, 0);
    const std::string drawn = "7k/8/6K1/8/8/8/8/R7 w - - 100 90";
    const std::string first = textsOf(legalMovesOf(positionOf(drawn))).front();
    EXPECT_EQ(lineOf(searchFrom(drawn, LONG_BUDGET)), " " + first);
}

TEST_F(EngineGame, StopAndSpentBudgetsEndWithAMoveAtTheFirstPoll) {
    for (const Milliseconds budget : {Milliseconds{0}, Milliseconds{-1}, LONG_BUDGET}) {
        listener.polls = 0;
        listener.stopAfterPolls = budget == LONG_BUDGET ? 1 : 0;
        EXPECT_GE(searchFrom(MIDDLE_GAME, budget).varLength, 1) << budget;
        EXPECT_EQ(listener.polls, 1) << budget;
    }
}

TEST_F(EngineGame, MayChangeWhileItIsSearched) {
    const Game searched = engine.getGame();
    listener.stopAfterPolls = 5;
    Variant line;
    std::thread search([&] {
        line = engine.search(searched, {clockMilliseconds(), LONG_BUDGET, true});
    });
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(engine.init(ONLY_MOVE), "");
        playMoves("a1b2");
        engine.setHashTableSize(1000 + i);
        sleepMilliseconds(1);
    }
    search.join();
    EXPECT_GE(listener.reports, 2);
    EXPECT_NO_THROW(moveOf(positionOf(START_FEN), lineOf(line).substr(1, 4)));
    EXPECT_EQ(engine.getGame().repetitionHashes.size(), 2U);

    // The next search has the size that was asked for last.
    engine.init();
    EXPECT_EQ(engine.search(0, true).varLength > 0, true);
    EXPECT_EQ(engine.getTreeGenerator().getState().table.getHashTable().getSize(), 1099);
}

TEST_F(EngineGame, EndsItsThreadWithItself) {
    const Milliseconds begin = clockMilliseconds();
    {
        const auto other = std::make_unique<Engine>(config);
        EXPECT_EQ(other->init(MIDDLE_GAME), "");
        EXPECT_GE(other->search(100, false).varLength, 1);
    }
    EXPECT_LT(clockMilliseconds() - begin, SOON);
}

} // namespace
