// The log as it is in a build that has it switched on: this program compiles it so.
#include "base/loggingService.h"
#include "base/standardLogger.h"

#include <gtest/gtest.h>
#include <thread>

namespace {

static_assert(LOG_ENABLED);

TEST(LogSwitchedOn, PassesEveryLevelToEverySink) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    LoggerService service;
    service.info("nobody listens");
    service.addStandard();
    service.addStandard(); // there is one already
    service.error("E");
    service.warn("W");
    service.addLoggerImpl(std::make_unique<StandardLogger>());
    service.info("I", -1);
    service.debug("D", 23);
    service.trace("T");
    service.trace("unwanted", "tag");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ERROR: E\nWARN: W\nINFO: I-1\nINFO: I-1\nDEBUG: D23\nDEBUG: D23\n"
              "TRACE: T\nTRACE: T\n");
}

// Counts without a lock of its own, and leaves another thread time to come in between.
class CountingLogger final : public Logger {
public:
    explicit CountingLogger(int& _count) : count(_count) {}
    void error(const std::string& /*message*/) override {
        const int before = count;
        std::this_thread::yield();
        count = before + 1;
    }
    void warn(const std::string& /*message*/) override {}
    void info(const std::string& /*message*/) override {}
    void debug(const std::string& /*message*/) override {}
    void trace(const std::string& /*message*/) override {}
    bool hasTag(const std::string& /*tag*/) override { return false; }

private:
    int& count;
};

TEST(LogSwitchedOn, KeepsItsSinksToOneThreadAtATime) {
    constexpr int MESSAGES = 2000;
    int count = 0;
    LoggerService service;
    service.addLoggerImpl(std::make_unique<CountingLogger>(count));
    const auto write = [&service] {
        for (int i = 0; i < MESSAGES; ++i) {
            service.error("E");
        }
    };
    std::thread other(write);
    write();
    other.join();
    EXPECT_EQ(count, 2 * MESSAGES);
}

} // namespace
