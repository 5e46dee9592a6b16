#include "search/statistics.h"

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <limits>
#include <sstream>
#include <string_view>

TestStatistics testStatistics;

namespace {

constexpr Indexed<int, std::string_view, N_TYPES> STATISTICS_NAMES = {
    "Legal moves ordinal search",   "Pseudolegal moves ordinal search",
    "Legal moves quiscence search", "Pseudolegal moves quiscence search",
    "Ordinal search cutoffs",       "Quiscence search cutoffs",
};

void printStatistic(std::string_view name, std::int64_t statisticInt, double secs,
                    std::ostream& stream) {
    stream << name << " per sec : " << static_cast<double>(statisticInt) / secs << std::endl;
}

// Saturates, as counters that were read from text may overflow.
std::int64_t sumOf(const Indexed<int, std::int64_t, MAX_PLIES>& counters) {
    std::int64_t sum = 0;
    for (const std::int64_t counter : counters) {
        if (__builtin_add_overflow(sum, counter, &sum)) {
            return counter < 0 ? std::numeric_limits<std::int64_t>::min()
                               : std::numeric_limits<std::int64_t>::max();
        }
    }
    return sum;
}

bool isBelow(int value, int limit) {
    return 0 <= value && value < limit;
}

} // namespace

void TestStatistics::reset() {
    runs.clear();
    runPointer = -1;
    clockStart = clockMilliseconds();
}

void TestStatistics::init() {
    for (Run& run : runs) {
        run.statistic = {};
    }
}

void TestStatistics::newRun() {
    clockStart = clockMilliseconds();
    goToRun(std::min(runPointer + 1, MAX_RUNS - 1));
}

void TestStatistics::goToRun(int run) {
    runPointer = run;
    runs.resize(std::max(runs.size(), at(run) + 1));
}

void TestStatistics::sumStatistics() {
    for (Run& run : runs) {
        std::transform(run.statistic.begin(), run.statistic.end(), run.sumStatistic.begin(), sumOf);
    }
}

void TestStatistics::printStatistics(int run, std::ostream& stream) const {
    const auto& [counters, sums] = runs[at(run)];
    const Milliseconds elapsed = clockMilliseconds() - clockStart;
    // For a rate, no time counts as 1 millisecond.
    const double rateSecs = static_cast<double>(std::max<Milliseconds>(elapsed, 1)) / 1000.0;

    stream << "Run: " << run << std::endl;
    stream << std::fixed << std::setprecision(3);
    stream << "Measured duration: " << static_cast<double>(elapsed) / 1000.0 << " secs. "
           << std::endl;
    for (int type = 0; type < N_TYPES; ++type) {
        for (int depth = 0; depth < MAX_PLIES; ++depth) {
            if (counters[type][depth] != 0) {
                stream << STATISTICS_NAMES[type] << " at ply " << depth << " : "
                       << counters[type][depth] << std::endl;
            }
        }
    }
    for (int type = 0; type < N_TYPES; ++type) {
        stream << "Sum of " << STATISTICS_NAMES[type] << ": " << sums[type] << std::endl;
        printStatistic(STATISTICS_NAMES[type], sums[type], rateSecs, stream);
    }
}

void TestStatistics::printAll(std::ostream& stream) {
    sumStatistics();
    for (int run = 0; run <= runPointer; ++run) {
        printStatistics(run, stream);
    }
}

void TestStatistics::printLastStatistics() const {
    if (runPointer >= 0) {
        printStatistics(runPointer, std::cout);
    }
}

void TestStatistics::readLine(const std::string& line) {
    if (line.starts_with("Run")) {
        std::istringstream stream(line);
        std::string word;
        int run = 0;
        if (stream >> word >> run && isBelow(run, MAX_RUNS)) {
            goToRun(run);
        }
        return;
    }
    for (int type = 0; type < N_TYPES; ++type) {
        const std::string key = std::string(STATISTICS_NAMES[type]) + " at ply";
        if (!line.starts_with(key)) {
            continue;
        }
        std::istringstream stream(line.substr(key.size()));
        int depth = 0;
        std::string colon;
        std::int64_t value = 0;
        if (stream >> depth >> colon >> value && isBelow(depth, MAX_PLIES) && runPointer >= 0) {
            runs[at(runPointer)].statistic[type][depth] = value;
        }
        return;
    }
}

std::int64_t TestStatistics::get(int run, int type, int ply) const {
    return at(run) < runs.size() ? runs[at(run)].statistic[type][ply] : 0;
}
