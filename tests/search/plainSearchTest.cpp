// The search that plays against its plain twin, pass by pass.
#include "kestran-bench/bench.h"
#include "search/caseMaker.h"

#include <gtest/gtest.h>

namespace {

#ifdef KESTRAN_SLOW_BUILD
constexpr int MADE_POSITIONS = 100;
constexpr int LEAST_SEEN = 1;
constexpr std::int64_t BENCH_NODES = 2000;
#else
constexpr int MADE_POSITIONS = 1000;
constexpr int LEAST_SEEN = 5;
constexpr std::int64_t BENCH_NODES = 25000;
#endif
constexpr std::int64_t ENDLESS = 1000000000;

// Of a position, without an end by the number of nodes.
SearchCase endlessCase(const std::string& fen) {
    SearchCase example;
    example.fen = PlayingSearch::accept(fen);
    example.stopFrom = ENDLESS;
    example.maxNodes = ENDLESS;
    return example;
}

TEST(PlainSearch, SearchesMadePositionsAlike) {
    SearchComparison comparison;
    for (int seed = 0; seed < MADE_POSITIONS; ++seed) {
        const SearchCase example = CaseMaker(static_cast<unsigned>(seed)).make();
        ASSERT_EQ(comparison.run(example), "") << "seed " << seed;
    }
    // Every outcome that the search knows has come up.
    for (const char* outcome :
         {"FAILLOW", "FAILHIGH", "OK", "OK_FINISH", "abandoned", "no line", "later FAILLOW",
          "later FAILHIGH", "later OK", "later OK_FINISH", "line from the table"}) {
        EXPECT_GE(comparison.seen[outcome], LEAST_SEEN) << outcome;
    }
}

TEST(PlainSearch, SearchesBenchPositionsAlike) {
    SearchComparison comparison;
    for (const BenchPosition& position : getBenchPositions()) {
        SearchCase example = endlessCase(position.fen);
        example.settings.tableSize = 20011;
        example.stopFrom = BENCH_NODES;
        ASSERT_EQ(comparison.run(example), "");
    }
    EXPECT_GE(comparison.seen["abandoned"], 20);
}

// Material of exactly the end game's limit.
TEST(PlainSearch, SearchesAtTheEndGameLimitAlike) {
    SearchComparison comparison;
    for (const char* fen :
         {"8/4r3/2b1P2p/RN6/P3p3/1B4k1/7n/K7 w - - 0 1",
          "2r1r1k1/5b2/8/8/8/8/5B2/2R1R1K1 w - - 0 1", "q5k1/5b2/8/8/8/8/P4B2/Q5K1 w - - 0 1",
          "r5k1/pp3b2/8/3n4/8/8/5B2/R3R1K1 b - - 0 1"}) {
        for (int i = 0; i < 2; ++i) { // both kinds of search
            SearchCase example = endlessCase(fen);
            example.maxPasses = 3;
            ASSERT_EQ(comparison.run(example), "");
        }
    }
}

// Kings that cannot get out from behind their pawns, and a side that has moves to spare: it
// is ahead and will not repeat the position, so its line grows beyond what a line holds.
TEST(PlainSearch, SearchesFullLinesAlike) {
    SearchComparison comparison;
    for (const bool useTable : {false, true}) {
        SearchCase example = endlessCase("7k/p1p1p1p1/P1P1P1P1/8/8/p1p1p1pP/P1P1P1P1/1K6 w - -");
        example.settings.useTable = useTable;
        example.settings.tableSize = 100;
        ASSERT_EQ(comparison.run(example), "");
    }
    EXPECT_GE(comparison.seen["full line"], 1);
}

} // namespace
