// Scores of mates, and scores as text.
#include "search/score.h"

#include "testing/printed.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

TEST(Scores, OfMatesContainTheirLength) {
    for (int moves = 1; moves <= 25; ++moves) {
        EXPECT_EQ(mateInFromEval(mateInEval(moves)), moves);
        // Mated after an even number of plies, one step inward for each.
        EXPECT_EQ(mateInFromEval(MATED_EVALUATION + 2 * (moves - 1)), moves - 1);
    }
    EXPECT_EQ(mateInEval(1), -furtherFromCheckMate(MATED_EVALUATION));
    EXPECT_EQ(mateInEval(0), 0);
    EXPECT_EQ(mateInEval(-1), -2147483449);
    EXPECT_EQ(mateInEval(-25), -2147483497);
    // Moves beyond the range of scores give the end of the integer range.
    EXPECT_EQ(mateInEval(-100), -2147483647);
    EXPECT_EQ(mateInEval(-101), std::numeric_limits<int>::min());
    EXPECT_EQ(mateInEval(std::numeric_limits<int>::min()), std::numeric_limits<int>::min());
    EXPECT_EQ(mateInEval(std::numeric_limits<int>::max()), std::numeric_limits<int>::min());
    for (const int limit : {2147483398, -2147483398}) {
        EXPECT_EQ(mateInFromEval(limit), 0);
        EXPECT_EQ(printed([limit] { printEval(limit); }), std::to_string(limit) + '\n');
    }
    EXPECT_EQ(printed([] { printEval(2147483447); }), "Will mate in 1 (2147483447)\n");
    EXPECT_EQ(printed([] { printEval(-2147483446); }), "Will be in mate in 1 (-2147483446)\n");
    EXPECT_EQ(printed([] { printEval(-1500); }), "-1500\n");
}

} // namespace
