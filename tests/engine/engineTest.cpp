#include "base/cppIoUtils.h"
#include "testing/engineSupport.h"

#include <gtest/gtest.h>

#include <span>
#include <thread>

namespace {

class EngineGame : public testing::Test {
protected:
    EngineGame() {
        engine.setInfoListener(&reports);
        engine.setStopListener(&reports);
    }

    void playMoves(const std::string& moves) {
        for (const std::string& move : splitString(moves)) {
            engine.doMoveLongAlgebraic(move);
        }
    }

    EngineConfig config = makeConfig();
    Reports reports; // must outlive the searches
    Engine engine{config};
};

const std::string MATE_IN_ONE = "7k/8/6K1/8/8/8/8/R7 w - - 0 1";
const std::string ONLY_MOVE = "k7/8/8/8/8/8/1r6/K7 w - - 0 1";
const std::string STALEMATE = "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1";

TEST_F(EngineGame, KeepsTheKeysOfItsPositionsAndSkipsOtherWords) {
    playMoves("g1f3 e2e5 g8f6 xyz a f3g1 f6g8");
    const std::vector<std::uint64_t>& keys = engine.getGame().repetitionHashes;
    ASSERT_EQ(keys.size(), 5U);
    EXPECT_EQ(keys[0], keys[4]);
    EXPECT_EQ(keys[4], engine.getPosition().incremental.hash);
    EXPECT_NE(engine.init("8/8/8/8/8/8/8/8 w - - 0 1"), "");
    EXPECT_EQ(keys.size(), 5U);
    engine.init();
    playMoves("e2e4");
    EXPECT_EQ(keys, (std::vector{positionOf(START_FEN).incremental.hash,
                                 positionAfterMoves("e2e4").incremental.hash}));
}

TEST_F(EngineGame, SearchOnTheCallersThreadFindsTheMove) {
    EXPECT_EQ(engine.init(MATE_IN_ONE), "");
    EXPECT_EQ(LongAlgebraicMove(engine.searchMove().value()).toString(), "a1a8");
    EXPECT_EQ(movesTextOf(engine.searchDepth(5).line), " a1a8");
    EXPECT_EQ(movesTextOf(engine.search().line), " a1a8");
    EXPECT_EQ(engine.init(STALEMATE), "");
    EXPECT_FALSE(engine.searchMove().has_value());
}

// Nodes after the last report belong to a pass that was abandoned.
TEST_F(EngineGame, SkipsPassesThatWouldNotEndInTime) {
    int searches = 0;
    int abandoned = 0;
    for (const char* move : {"e2e4", "e7e5", "g1f3", "b8c6", "f1c4", "f8c5", "c2c3", "g8f6", "d2d3",
                             "d7d6", "c1g5", "h7h6"}) {
        engine.doMoveLongAlgebraic(move);
        SearchRequest request;
        request.limits.time = {clockMilliseconds(), 100, false, true};
        request.limits.useBook = false;
        request.game = engine.getGame();
        const SearchResult result = engine.search(request);
        ++searches;
        abandoned += !result.report || result.nodes > result.report->nodesSearched ? 1 : 0;
    }
    // Without the forecast, nearly every search abandons one. A busy machine upsets the forecast.
    EXPECT_LE(abandoned, searches * 2 / 3);
}

TEST_F(EngineGame, MayChangeWhileItIsSearched) {
    SearchLimits limits;
    limits.time.infinite = true;
    const SearchRequest request = requestFor(engine.getGame(), limits);
    reports.wanted = 4;
    Variant line;
    std::thread search([&] { line = engine.search(request).line; });
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(engine.init(ONLY_MOVE), "");
        playMoves("a1b2");
        engine.setHashTableSize(1000 + i);
        sleepMilliseconds(1);
    }
    search.join();
    EXPECT_NO_THROW(moveOf(positionOf(START_FEN), movesTextOf(line).substr(1, 4)));
    EXPECT_EQ(engine.getGame().repetitionHashes.size(), 2U);

    // The next search has the size that was asked for last.
    engine.init();
    EXPECT_GT(searchFor(engine, 0, true).line.varLength, 0);
    EXPECT_EQ(engine.getTreeGenerator().state.table.getSize(), 1099);
}

// A stopped search leaves killers, counters and a path of its own, each of which would change the
// next one.
TEST_F(EngineGame, SearchIsTheSameAfterAStoppedOne) {
    engine.setHashTableSize(0); // as a cleared table still gives hints
    EXPECT_EQ(engine.init("6k1/pp3p1p/2p2np1/3r4/3N4/1PR3P1/P4P1P/6K1 w - - 30 40"), "");
    std::vector<std::string> searches(2);
    for (std::string& text : searches) {
        const std::size_t before = reports.infos.size();
        reports.wanted = before + 4;
        searchFor(engine, 0, true);
        engine.joinThread();
        for (const InfoStruct& info : std::span(reports.infos).subspan(before, 4)) {
            text += std::to_string(info.pv.evaluation) + ' ' + std::to_string(info.nodesSearched) +
                    movesTextOf(info.pv) + '\n';
        }
    }
    EXPECT_EQ(searches[0], searches[1]);
}

// No reader sees a line that is half another.
TEST(Slot, IsSharedByTwoThreads) {
    IdaVariant slot;
    const int number = slot.getNextThreadId();
    std::thread writer([&] {
        for (int i = 0; i < 20000; ++i) {
            Variant line;
            line.variantMoves[0] = {};
            line.varLength = line.evaluation = i % 2;
            slot.setVariant(line, number);
        }
        slot.signalReady(number);
    });
    int torn = 0;
    while (!slot.isReady()) {
        const Variant line = slot.getResult().line;
        torn += line.evaluation != line.varLength ? 1 : 0;
    }
    writer.join();
    EXPECT_EQ(torn, 0);
}

} // namespace
