// A search in a fresh process is the same each time, node for node.

#include "testing/uciTalk.h"

#include <gtest/gtest.h>
#include <regex>

namespace {

constexpr const char* POSITION =
    "position fen 6k1/pp3p1p/2p2np1/3r4/3N4/1PR3P1/P4P1P/6K1 w - - 0 1";
constexpr int ANY_SIZE = -1;

// The reports of a search in a fresh process, without what the clock tells: up to
// `lastDepth`, or, if that is 0, all that come before the closing line of `go`.
std::vector<std::string> reportsOf(int hash, const std::string& go, int lastDepth) {
    UciProcess process(KESTRAN_BINARY_DIR "/kestran");
    if (hash != ANY_SIZE) {
        process.send("setoption name Hash value " + std::to_string(hash));
    }
    process.send(POSITION);
    process.send(go);
    std::vector<std::string> reports;
    while (const auto line = process.readLine(patience(20000))) {
        static const std::regex CLOCK(" time \\d+ nps \\d+ $");
        if (line->starts_with("bestmove")) {
            break;
        }
        reports.push_back(std::regex_replace(*line, CLOCK, ""));
        if (lastDepth > 0 && static_cast<int>(reports.size()) == lastDepth) {
            break;
        }
    }
    return reports;
}

#ifdef KESTRAN_SLOW_BUILD
constexpr int DEPTH = 4;
#else
constexpr int DEPTH = 5;
#endif

class TableSize : public testing::TestWithParam<int> {};

TEST_P(TableSize, SearchesAreTheSameNodeForNode) {
    const std::vector<std::string> reports = reportsOf(GetParam(), "go infinite", DEPTH);
    ASSERT_EQ(reports.size(), static_cast<std::size_t>(DEPTH));
    EXPECT_NE(reports.back().find(" nodes "), std::string::npos) << reports.back();
    EXPECT_EQ(reportsOf(GetParam(), "go infinite", DEPTH), reports);
}

INSTANTIATE_TEST_SUITE_P(, TableSize, testing::Values(0, 1, 2, 16, 64, 192, 512),
                         testing::PrintToStringParamName());

// What a search has published when it is stopped is a prefix of what a longer one does.
TEST(EarlyStop, PublishesAPrefix) {
    const std::vector<std::string> longer = reportsOf(ANY_SIZE, "go infinite", DEPTH + 1);
    ASSERT_EQ(longer.size(), static_cast<std::size_t>(DEPTH + 1));
    for (const char* go :
         {"go movetime 0", "go movetime 0", "go movetime 250", "go movetime 450"}) {
        std::vector<std::string> reports = reportsOf(ANY_SIZE, go, 0);
        ASSERT_GE(reports.size(), 2U);
        const std::string closing = reports.back();
        reports.pop_back();
        ASSERT_LE(reports.size(), longer.size()) << "the longer search is too short";
        EXPECT_EQ(reports, std::vector<std::string>(
                               longer.begin(), longer.begin() + static_cast<long>(reports.size())));
        // The last line may be one whose report came too late to be sent.
        const auto isLineOf = [&closing](const std::string& report) {
            return report.starts_with(closing + " score");
        };
        EXPECT_TRUE(isLineOf(reports.back()) ||
                    (reports.size() < longer.size() && isLineOf(longer[reports.size()])))
            << closing;
    }
}

} // namespace
