// The long run itself: a healthy engine gets through it, and one that does wrong does not.

#include "kestran-soak/soak.h"

#include <gtest/gtest.h>

namespace {

const std::string ENGINE = KESTRAN_BINARY_DIR "/kestran";

// A game of an engine whose words go through a filter of the shell.
SoakReport playFiltered(const std::string& filter) {
    return runSoak({.engine = "/bin/sh", .arguments = {"-c", ENGINE + " | " + filter}, .plies = 6});
}

TEST(Soak, HealthyEngine) {
    const SoakReport report = runSoak({.engine = ENGINE, .plies = 40});
    EXPECT_EQ(report.games, 1);
    EXPECT_GT(report.plies, 0);
    EXPECT_EQ(report.illegalMoves, std::vector<std::string>());
    EXPECT_EQ(report.protocolFaults, std::vector<std::string>());
    ASSERT_EQ(report.memory.size(), 1U);
    EXPECT_GT(report.memory[0].first, 1000);
}

TEST(Soak, GrowingMemoryIsAFault) {
    SoakReport report;
    report.memory = {{.first = 9000, .last = 9500}};
    EXPECT_TRUE(report.isClean());
    report.memory = {{.first = 9000, .last = 9500}, {.first = 9000, .last = 19000}};
    EXPECT_FALSE(report.isClean());
}

TEST(Soak, EngineThatIsNotThere) {
    EXPECT_EQ(runSoak({.engine = ENGINE + "-not"}).protocolFaults.size(), 1U);
}

TEST(Soak, IllegalMove) {
    const SoakReport report =
        playFiltered(R"(sed -u '/score/!s/^\(info pv\|bestmove\) .*/\1 a1a1/')");
    EXPECT_EQ(report.illegalMoves.size(), 1U);
    EXPECT_EQ(report.protocolFaults, std::vector<std::string>());
    EXPECT_FALSE(report.isClean());
}

TEST(Soak, LateAnswer) {
    const SoakReport report =
        playFiltered("while IFS= read -r line; do case \"$line\" in bestmove*) sleep 0.4;; esac;"
                     " printf '%s\\n' \"$line\"; done");
    EXPECT_EQ(report.timeLosses.size(), 1U);
    EXPECT_EQ(report.whiteWins + report.blackWins, 1);
    EXPECT_FALSE(report.isClean());
}

TEST(Soak, ProtocolFaults) {
    for (const char* filter : {
             "sed -u '/^bestmove/p'",                  // two answers
             "sed -u '/^info pv/{/score/!d}'",         // no closing line
             R"(sed -u 's/\( nps .*\) $/\1/')",        // a report without its last blank
             "sed -u '/score/s/pv [^ ]*/& a1a1/'",     // a line that is not legal
             "sed -u 's/^bestmove .*/bestmove a1a1/'", // another answer than the closing line
             R"(sed -u 's/^readyok/&\n/')",            // an unknown line
             "sed -u 's/Hash/hash/'",                  // another greeting
             "head -n 9",                              // an early end
         }) {
        const SoakReport report = playFiltered(filter);
        EXPECT_EQ(report.protocolFaults.size(), 1U) << filter;
        EXPECT_EQ(report.illegalMoves, std::vector<std::string>()) << filter;
        EXPECT_FALSE(report.isClean()) << filter;
    }
}

} // namespace
