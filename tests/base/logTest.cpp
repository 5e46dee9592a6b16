// The log as it is in a build that has it switched on: this program compiles it so.
#include "base/loggingService.h"
#include "base/standardLogger.h"

#include <gtest/gtest.h>

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

} // namespace
