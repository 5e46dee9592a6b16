// Counters of the search, by pass, kind and depth.
#pragma once

#include "base/clock.h"
#include "base/indexed.h"

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

inline constexpr int MAX_RUNS = 2000; // passes that can be counted
inline constexpr int MAX_PLIES = 40;  // depths that can be counted
inline constexpr int N_TYPES = 6;     // kinds of counter

// Counts what each pass of a search does. A run is one pass of the tree search. Not thread-safe:
// one search at a time counts in an object.
class TestStatistics {
public:
    TestStatistics() { reset(); }

    // Kinds of counter.
    static constexpr int ORDINAL_SEARCH = 0;         // legal moves of the tree
    static constexpr int ORDINAL_SEARCH_ALL = 1;     // generated moves of the tree
    static constexpr int Q_SEARCH = 2;               // legal moves of quiescence
    static constexpr int Q_SEARCH_ALL = 3;           // generated moves of quiescence
    static constexpr int ORDINAL_SEARCH_CUTTOFS = 4; // cut-offs of the tree
    static constexpr int Q_CUTTOFS = 5;              // cut-offs of quiescence

    // Closes all runs, clears every counter and starts the clock.
    void reset();
    // Clears every counter of every run.
    void init();
    // Opens the next run and starts the clock. Past the last run the counters stay at that run.
    void newRun();
    // Adds to a counter of the current run, which must be open.
    void incrementStatistic(int type, int ply, int increment) {
        runs[at(runPointer)].statistic[type][ply] += increment;
    }
    // Sums the counters of every run over the depths, for the reports below.
    void sumStatistics();
    // Reports one run, with the sums of the last sumStatistics(). Requires 0 <= run <=
    // getRunPointer().
    void printStatistics(int run, std::ostream& stream) const;
    // Sums up and reports every run.
    void printAll(std::ostream& stream);
    // Reports the current run on standard output.
    void printLastStatistics() const;
    // Reads one line of a report: the run's number, or a counter. Any other line, and numbers
    // out of range, change nothing.
    void readLine(const std::string& line);

    // Index of the current run, -1 before the first.
    int getRunPointer() const { return runPointer; }
    // A counter; 0 for a run that was never opened. Requires `type` and `ply` in range.
    std::int64_t get(int run, int type, int ply) const;

private:
    using PerDepth = Indexed<int, std::int64_t, MAX_PLIES>;
    struct Run {
        Indexed<int, PerDepth, N_TYPES> statistic{};        // by kind and depth
        Indexed<int, std::int64_t, N_TYPES> sumStatistic{}; // by kind; see sumStatistics()
    };

    void goToRun(int run);

    std::vector<Run> runs;   // grows up to MAX_RUNS
    int runPointer;          // index of the current run, -1 before the first
    Milliseconds clockStart; // the clock at the start of the current run, or at reset()
};

// The statistics of `kestran-bench --stats` and of the tests.
extern TestStatistics testStatistics;
