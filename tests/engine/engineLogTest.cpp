// What the engine writes to its log. Built only where the log is switched on.
#include "base/loggingService.h"
#include "testing/engineSupport.h"

#include <gtest/gtest.h>

namespace {

class EngineLog : public testing::Test {
protected:
    using Messages = std::vector<std::string>;

    EngineLog() { logger.addStandard(); }

    // The messages of interest that come while `body` runs and the last search thread ends.
    template <class Body> Messages messagesOf(Body body) {
        testing::internal::CaptureStderr();
        body();
        engine.joinThread();
        std::istringstream log(testing::internal::GetCapturedStderr());
        Messages messages;
        for (std::string line; std::getline(log, line);) {
            for (const char* start : {"Engine.", "Position fen: ", "Old thread", "Ida variant"}) {
                if (line.starts_with(std::string("INFO: ") + start)) {
                    messages.push_back(line.substr(6));
                }
            }
        }
        return messages;
    }

    EngineConfig config = makeConfig(1024);
    Engine engine{config};
};

const std::string MATE_IN_ONE = "7k/8/6K1/8/8/8/8/R7 w - - 0";

TEST_F(EngineLog, TimedSearchLogsItsTaskFirstAndThenWhetherItJoined) {
    EXPECT_EQ(engine.init(MATE_IN_ONE), "");
    searchFor(engine, 7, false); // leaves its thread to the next one
    EXPECT_EQ(messagesOf([&] { searchFor(engine, 5, false); }),
              (Messages{"Engine.search - milliseconds:5", "Position fen: " + MATE_IN_ONE,
                        "Old thread joined", "Ida variant ready from ida"}));
    EXPECT_EQ(messagesOf([&] { searchFor(engine, 5, false); }),
              (Messages{"Engine.search - milliseconds:5", "Position fen: " + MATE_IN_ONE,
                        "Ida variant ready from ida"}));
}

TEST_F(EngineLog, SearchesOnTheCallersThreadLogOnlyTheirNames) {
    EXPECT_EQ(engine.init(MATE_IN_ONE), "");
    searchFor(engine, 5, false);
    EXPECT_EQ(messagesOf([&] { engine.search(); }), Messages{"Engine.search()"});
    searchFor(engine, 5, false);
    EXPECT_EQ(messagesOf([&] { engine.searchMove(); }), Messages{"Engine.searchMove()"});
    searchFor(engine, 5, false);
    EXPECT_EQ(messagesOf([&] { engine.searchDepth(1); }), Messages{"Engine.search depth() = 1"});
}

// Each way in which the ready flag ends a timed search.
TEST_F(EngineLog, TimedSearchLogsThatItsFlagIsUp) {
    const std::string ready = "Ida variant ready from ida";
    const std::string abandoned = "Ida variant ready from treeGenartor";
    const auto searchWith = [this](const std::string& fen, bool isStopped,
                                   const TimeBudget& budget) {
        Ida ida(config);
        IdaVariant slot;
        const int number = slot.getNextThreadId();
        if (isStopped) {
            slot.signalReady(number);
        }
        SearchLimits limits;
        limits.time = budget;
        return messagesOf(
            [&] { ida.generateTree(requestFor(positionOf(fen), limits), number, slot); });
    };
    const TimeBudget timed = {clockMilliseconds(), 100000};
    const TimeBudget infinite = {clockMilliseconds(), -1, true};
    const std::string wild = "6Q1/1q1pp2q/2P4P/Qq4P1/K7/pP6/5pk1/Q7 w - - 7 4"; // a long first pass
    EXPECT_EQ(searchWith(START_FEN, false, timed), Messages{ready}) << "a book move";
    EXPECT_EQ(searchWith(MATE_IN_ONE, false, timed), Messages{ready}) << "a mate";
    EXPECT_EQ(searchWith(wild, true, timed), (Messages{abandoned, ready}));
    EXPECT_EQ(searchWith(wild, true, infinite), Messages{abandoned}) << "asks no clock";
}

} // namespace
