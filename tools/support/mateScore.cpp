#include "support/mateScore.h"

#include "search/score.h"

#include <cstdint>
#include <cstdlib>

bool isMate(int score) {
    return isUpperMateLimit(score) || isBottomMateLimit(score);
}

int movesToMate(int score) {
    const std::int64_t plies = std::int64_t{-MATED_EVALUATION} - std::abs(std::int64_t{score});
    const auto moves = static_cast<int>((plies + 1) / 2);
    return score < 0 ? -moves : moves;
}
