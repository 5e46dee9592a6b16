// Elo, its error and the sequential test.

#include "support/matchScore.h"

#include <cmath>
#include <gtest/gtest.h>
#include <utility>

namespace {

TEST(MatchScore, Statistics) {
    MatchScore score;
    for (const auto& [points, count] : {std::pair(0, 10), {1, 20}, {2, 40}, {3, 30}, {4, 20}}) {
        for (int i = 0; i < count; ++i) {
            score.addPair(points);
        }
    }
    EXPECT_EQ(score.countPairs(), 120);
    EXPECT_NEAR(score.getElo(), 43.658, 0.001);
    EXPECT_NEAR(score.getEloError(), 37.086, 0.001);
    EXPECT_NEAR(score.getLlr(0, 10), 1.1163, 0.0001);
    EXPECT_EQ((Sprt{0, 10}.judge(score)), "open");
    EXPECT_EQ((Sprt{-12, 10}.judge(score)), "open");
    EXPECT_EQ((Sprt{-13, 10}.judge(score)), "H1");
    EXPECT_EQ((Sprt{40, 90}.judge(score)), "open");
    EXPECT_EQ((Sprt{40, 91}.judge(score)), "H0");
    MatchScore small;
    small.addPair(2);
    EXPECT_TRUE(std::isinf(small.getEloError()));
}

} // namespace
