#include "search/score.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <limits>

namespace {

constexpr int MATE_TEXT_LIMIT = 2147483398; // printEval() prints scores beyond it as mates
constexpr std::int64_t MATE_IN_BASE = 1073741724;

} // namespace

int toCentipawns(int eval) {
    return static_cast<int>(std::lround(eval / static_cast<double>(CENTIPAWN)));
}

int movesToMate(int eval) {
    const std::int64_t plies = std::int64_t{-MATED_EVALUATION} - std::abs(std::int64_t{eval});
    const auto moves = static_cast<int>((plies + 1) / 2);
    return eval < 0 ? -moves : moves;
}

int mateInEval(int mateIn) {
    if (mateIn == 0) {
        return 0;
    }
    const std::int64_t half = mateIn > 0 ? MATE_IN_BASE - mateIn : mateIn - MATE_IN_BASE;
    return static_cast<int>(std::clamp<std::int64_t>(half * 2 + 1, std::numeric_limits<int>::min(),
                                                     std::numeric_limits<int>::max()));
}

int mateInFromEval(int eval) {
    if (std::abs(std::int64_t{eval}) <= MATE_TEXT_LIMIT) {
        return 0;
    }
    return eval > 0 ? movesToMate(eval) : -movesToMate(eval);
}

void printEval(int eval) {
    printEval(std::cout, eval);
}

void printEval(std::ostream& stream, int eval) {
    if (eval > MATE_TEXT_LIMIT) {
        stream << "Will mate in " << mateInFromEval(eval) << " (" << eval << ")\n";
    } else if (eval < -MATE_TEXT_LIMIT) {
        stream << "Will be in mate in " << mateInFromEval(eval) << " (" << eval << ")\n";
    } else {
        stream << eval << '\n';
    }
}
