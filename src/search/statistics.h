// Counters of the search, by pass, kind and depth.
#pragma once

#include "base/indexed.h"
#include "base/platform.h"

#include <cstdint>
#include <iosfwd>
#include <string>

inline constexpr int MAX_RUNS = 2000; // passes that the table has room for
inline constexpr int MAX_PLIES = 40;  // depths that the table has room for
inline constexpr int N_TYPES = 6;     // kinds of counter

// Counts what every pass of every search does. A run is one pass of the tree
// search. Only one search runs at a time, on one thread, so nothing is locked.
class TestStatistics {
public:
    // Kinds of counter.
    static constexpr int ORDINAL_SEARCH = 0;         // legal moves of the tree
    static constexpr int ORDINAL_SEARCH_ALL = 1;     // generated moves of the tree
    static constexpr int Q_SEARCH = 2;               // legal moves of quiescence
    static constexpr int Q_SEARCH_ALL = 3;           // generated moves of quiescence
    static constexpr int ORDINAL_SEARCH_CUTTOFS = 4; // cut-offs of the tree
    static constexpr int Q_CUTTOFS = 5;              // cut-offs of quiescence

    // Back to the state before the first run.
    void reset();
    // Every counter of every run to 0.
    void init();
    // Opens the next run. Past the last one the counters stay at that run.
    void newRun();
    // Adds to a counter of the current run, which must be open.
    void incrementStatistic(int type, int ply, int increment) {
        statistic[runPointer][type][ply] += increment;
    }
    // Sums up the counters of every run over the depths, for the reports below.
    void sumStatistics();
    // Reports one run. The sums are those of the last sumStatistics().
    void printStatistics(int run, std::ostream& stream) const;
    // Sums up and reports every run.
    void printAll(std::ostream& stream);
    // Reports the current run on standard output.
    void printLastStatistics() const;
    // Takes back one line of a report: the run's number, or a counter. Any other
    // line, and numbers outside the table, change nothing.
    void readLine(const std::string& line);

    // Index of the current run, -1 before the first.
    int getRunPointer() const { return runPointer; }
    // The counter of a run. All three indices must lie inside the table.
    std::int64_t get(int run, int type, int ply) const;

private:
    using PerDepth = Indexed<int, std::int64_t, MAX_PLIES>;

    // Per run and kind: the sum over all depths, filled only by sumStatistics().
    Indexed<int, Indexed<int, std::int64_t, N_TYPES>, MAX_RUNS> sumStatistic{};
    // Per run, kind and depth: the counter.
    Indexed<int, Indexed<int, PerDepth, N_TYPES>, MAX_RUNS> statistic{};
    int runPointer = -1;         // index of the current run, -1 before the first
    Milliseconds clockStart = 0; // the clock at the start of the current run
};

// The one object that the searches count into.
extern TestStatistics testStatistics;

// Counts in the one object.
inline void statsIncrement(int type, int depth, int increment) {
    testStatistics.incrementStatistic(type, depth, increment);
}
