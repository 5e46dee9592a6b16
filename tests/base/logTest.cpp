// The log of a build with KESTRAN_LOG, which this program compiles for itself.
#include "base/loggingService.h"
#include "base/standardLogger.h"

#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

static_assert(LOG_ENABLED);

TEST(LogSwitchedOn, PassesEveryLevelToEverySink) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    LoggerService service;
    service.info("there is no sink yet");
    service.addStandard();
    service.addStandard(); // adds none
    service.error("E");
    service.warn("W");
    service.addLoggerImpl(std::make_unique<StandardLogger>());
    service.info("I", -1);
    service.debug("D", 23);
    service.trace("T");
    service.trace("T", -2);
    service.trace("no sink takes this", "tag");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ERROR: E\nWARN: W\nINFO: I-1\nINFO: I-1\nDEBUG: D23\nDEBUG: D23\n"
              "TRACE: T\nTRACE: T\nTRACE: T-2\nTRACE: T-2\n");
}

// Keeps the trace messages with the tag that it takes. Counts errors without a lock, and yields in
// between.
class TestLogger final : public Logger {
public:
    TestLogger(std::vector<std::string>& _messages, int& _errors)
        : messages(_messages), errors(_errors) {}
    void error(const std::string& /*message*/) override {
        const int before = errors;
        std::this_thread::yield();
        errors = before + 1;
    }
    void warn(const std::string& /*message*/) override {}
    void info(const std::string& /*message*/) override {}
    void debug(const std::string& /*message*/) override {}
    void trace(const std::string& message) override { messages.push_back(message); }
    bool hasTag(const std::string& tag) override { return tag == "taken"; }

private:
    std::vector<std::string>& messages;
    int& errors;
};

TEST(LogSwitchedOn, PassesTaggedMessagesToTheSinksThatTakeTheTag) {
    std::vector<std::string> messages;
    LoggerService service;
    service.addLoggerImpl(std::make_unique<StandardLogger>());
    EXPECT_FALSE(service.hasTag("taken"));
    int errors = 0;
    service.addLoggerImpl(std::make_unique<TestLogger>(messages, errors));
    EXPECT_TRUE(service.hasTag("taken"));
    EXPECT_FALSE(service.hasTag("other"));
    testing::internal::CaptureStderr();
    service.trace(std::string("1"), std::string("taken"));
    service.trace("2", "taken");
    service.trace("3", "other");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(messages, (std::vector<std::string>{"1", "2"}));
}

TEST(LogSwitchedOn, CallsItsSinksFromOneThreadAtATime) {
    constexpr int MESSAGES = 2000;
    std::vector<std::string> messages;
    int errors = 0;
    LoggerService service;
    service.addLoggerImpl(std::make_unique<TestLogger>(messages, errors));
    const auto write = [&service] {
        for (int i = 0; i < MESSAGES; ++i) {
            service.error("E");
        }
    };
    std::thread other(write);
    write();
    other.join();
    EXPECT_EQ(errors, 2 * MESSAGES);
}

} // namespace
