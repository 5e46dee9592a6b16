// The counters of the search and their report.
#include "search/statistics.h"
#include "search/infoStruct.h"
#include "testing/printed.h"
#include "testing/readLines.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

TEST(NodesPerSecond, CountsNoTimeAsOneMillisecond) {
    EXPECT_EQ(nodesPerSecond(7, 0), 7000);
    EXPECT_EQ(nodesPerSecond(1999, 2000), 999);
    EXPECT_EQ(nodesPerSecond(30'000'000'000, 10'000), 3'000'000'000);
}

class Statistics : public testing::Test {
protected:
    static std::string reportOf(TestStatistics& counters) {
        std::ostringstream stream;
        counters.printAll(stream);
        return stream.str();
    }

    TestStatistics statistics;
};

TEST_F(Statistics, ReadsBackItsReport) {
    EXPECT_EQ(reportOf(statistics), "");
    for (int run = 0; run < 2; ++run) {
        statistics.newRun();
        statistics.incrementStatistic(TestStatistics::Q_SEARCH, 3 + run, 2);
        statistics.incrementStatistic(TestStatistics::Q_SEARCH, 3 + run, 2);
        statistics.incrementStatistic(TestStatistics::ORDINAL_SEARCH, 0, 3);
        statistics.incrementStatistic(TestStatistics::ORDINAL_SEARCH_ALL, 39, 5);
    }
    const std::string report = reportOf(statistics);
    for (const char* line :
         {"\nRun: 1\n", "\nLegal moves quiscence search at ply 3 : 4\n",
          "\nSum of Legal moves ordinal search: 3\n",
          "\nSum of Pseudolegal moves ordinal search: 5\n",
          "\nSum of Ordinal search cutoffs: 0\nOrdinal search cutoffs per sec",
          "\nSum of Quiscence search cutoffs: 0\nQuiscence search cutoffs per sec"}) {
        EXPECT_NE(report.find(line), std::string::npos) << line;
    }
    EXPECT_EQ(report.find("Ordinal search cutoffs at ply"), std::string::npos);

    const std::string last = printed([&] { statistics.printLastStatistics(); });
    const std::string counters = "\nLegal moves quiscence search at ply 4 : 4\n";
    EXPECT_TRUE(last.starts_with("Run: 1\n")) << last;
    EXPECT_NE(last.find(counters), std::string::npos) << last;

    TestStatistics copy;
    EXPECT_EQ(printed([&] { copy.printLastStatistics(); }), ""); // of no run
    const std::string ofNoRun = "Legal moves quiscence search at ply 3 : 4\n";
    readLines(copy, ofNoRun + report +
                        "Run: 2000\nRun: -1\nRun: x\nLegal moves quiscence search at ply 40 : 7\n"
                        "Legal moves quiscence search at ply 3 : x\n");
    EXPECT_EQ(copy.getRunPointer(), 1);
    for (int i = 0; i < 2 * N_TYPES * MAX_PLIES; ++i) {
        const int run = i % 2;
        const int type = i / 2 % N_TYPES;
        const int ply = i / 2 / N_TYPES;
        EXPECT_EQ(copy.get(run, type, ply), statistics.get(run, type, ply)) << i;
    }
}

TEST_F(Statistics, MeasureTimeFromTheStart) {
    readLines(statistics, "Run: 0\n"); // opens a run without starting its clock
    const std::string report = reportOf(statistics);
    EXPECT_NE(report.find("\nMeasured duration: 0."), std::string::npos) << report;
}

TEST_F(Statistics, SumsOfTextEndWithTheRange) {
    const std::string counter = "Ordinal search cutoffs at ply ";
    readLines(statistics, "Run: 0\n" + counter + "4 : 9223372036854775807\n" + counter +
                              "5 : 9223372036854775807\n");
    EXPECT_NE(reportOf(statistics).find("Sum of Ordinal search cutoffs: 9223372036854775807\n"),
              std::string::npos);
    readLines(statistics, counter + "4 : -9223372036854775808\n" + counter + "5 : -1\n");
    EXPECT_NE(reportOf(statistics).find("Sum of Ordinal search cutoffs: -9223372036854775808\n"),
              std::string::npos);
}

TEST_F(Statistics, CountsOnInTheLastRun) {
    for (int i = 0; i < MAX_RUNS + 500; ++i) {
        statistics.newRun();
        statistics.incrementStatistic(TestStatistics::Q_CUTTOFS, MAX_PLIES - 1, 1);
    }
    EXPECT_EQ(statistics.getRunPointer(), 1999);
    EXPECT_EQ(statistics.get(1998, TestStatistics::Q_CUTTOFS, MAX_PLIES - 1), 1);
    EXPECT_EQ(statistics.get(1999, TestStatistics::Q_CUTTOFS, MAX_PLIES - 1), 501);
    statistics.reset();
    EXPECT_EQ(statistics.getRunPointer(), -1);
    EXPECT_EQ(statistics.get(1999, TestStatistics::Q_CUTTOFS, MAX_PLIES - 1), 0);
}

} // namespace
