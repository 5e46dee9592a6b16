// Forecasts how long the next pass of a search takes.
#pragma once

#include "base/clock.h"

#include <cmath>
#include <cstdint>

// Passes are cheap and costly in turn, so the forecast uses the last two.
class PassForecast {
public:
    // `nodes` is the total after a good pass.
    void add(std::int64_t nodes) {
        const auto latest = static_cast<double>(nodes) - total;
        previous = total > 0 ? last : latest / FIRST_GROWTH;
        last = latest;
        total = static_cast<double>(nodes);
    }
    // The duration of the next pass at the pace so far.
    double nextDuration(Milliseconds elapsed) const {
        return GROWTH * std::sqrt(last * previous) * static_cast<double>(elapsed) / total;
    }

private:
    // The median pass takes twelve times the geometric mean of the last two. The constant is larger
    // because an abandoned pass costs more than one that was not tried.
    static constexpr double GROWTH = 14;
    static constexpr double FIRST_GROWTH = 5; // in place of the pass before the first

    double last = 0;     // nodes of the last good pass and of the failed ones before it
    double previous = 0; // likewise of the good pass before
    double total = 0;
};
