// The slot that a search thread shares with the thread that waits for it: the line
// published last, and the flag that ends the search.
#pragma once

#include "search/searchRequest.h"

#include <condition_variable>
#include <cstdint>
#include <mutex>

// Every search first draws a number. Calls with the number of an older search are ignored, so that
// a thread that is still winding down cannot affect the new search. Thread-safe.
class IdaVariant {
public:
    // Opens a search: lowers the ready flag, forgets pending wake-ups and returns the number of the
    // search.
    int getNextThreadId();
    // Publishes a line without a report, if the number is that of the current search.
    void setVariant(const Variant& variantPar, int _threadId);
    // Publishes the report of a pass with its line, if the number is that of the current search.
    // An empty line, such as that of a drawn root, replaces the score but not the moves.
    void setReport(const InfoStruct& info, int _threadId);
    // Publishes how many moves the current search has counted. No older search may be running.
    void setNodes(std::int64_t nodes);
    // Publishes the time of the current search, once it begins to run; see
    // SearchLimits::isPondering.
    void startClock(const TimeBudget& budget);
    std::optional<TimeBudget> getStartedClock();
    // Lets the flag count as raised from this reading of the clock on, for a search on the thread
    // that would raise it.
    void setDeadline(Milliseconds clock);
    // Raises the ready flag and wakes the waiting thread, if the number is that of the current
    // search.
    void signalReady(int _fakeThreadId);
    // Whether the search is to end, or has ended.
    bool isReady();
    // The line, the report and the nodes published last. SearchResult::number and time are 0.
    SearchResult getResult();

    // Wakes the waiting thread. If it is not waiting yet, its next wait ends at once.
    void wake();
    // Waits until wake() or signalReady() is called, but no longer than `duration`.
    void waitToBeWoken(Milliseconds duration);

private:
    std::mutex pMutex; // guards the rest
    std::condition_variable woken;
    bool isWoken = false; // a wake-up is pending
    bool ready = false;   // the ready flag: the search is to end, or has ended
    int fakeThreadId = 0; // number of the search that owns the slot
    SearchResult published;
    std::optional<TimeBudget> startedClock;
    std::optional<Milliseconds> deadline;
};
