#include "search/score.h"

#include <cstdint>
#include <iostream>

namespace {

// One step beyond a mate on the board, so that halving gives moves from plies.
constexpr std::int64_t MATE_BASE = 2147483449;
constexpr int MATE_TEXT_LIMIT = 2147483398; // scores beyond it are told as mates
constexpr int MATE_IN_BASE = 1073741724;

} // namespace

void printEval(int eval) {
    if (eval > MATE_TEXT_LIMIT) {
        std::cout << "Will mate in " << mateInFromEval(eval) << " (" << eval << ")\n";
    } else if (eval < -MATE_TEXT_LIMIT) {
        std::cout << "Will be in mate in " << mateInFromEval(eval) << " (" << eval << ")\n";
    } else {
        std::cout << eval << '\n';
    }
}

int mateInEval(int mateIn) {
    if (mateIn == 0) {
        return 0;
    }
    return mateIn > 0 ? (MATE_IN_BASE - mateIn) * 2 + 1 : (mateIn - MATE_IN_BASE) * 2 + 1;
}

int mateInFromEval(int eval) {
    if (eval > MATE_TEXT_LIMIT) {
        return static_cast<int>((MATE_BASE - eval) / 2);
    }
    if (eval < -MATE_TEXT_LIMIT) {
        return static_cast<int>((eval + MATE_BASE) / 2);
    }
    return 0;
}
