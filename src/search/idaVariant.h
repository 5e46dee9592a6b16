// The slot that a search thread shares with the thread that waits for it: the line
// published last, and the flag that ends the search.
#pragma once

#include "search/searchRequest.h"

#include <condition_variable>
#include <mutex>

// Every search draws a number first. A thread of an older search still holds the old
// number, so whatever it calls has no effect on the new one. Safe from any thread.
class IdaVariant {
public:
    // Opens a search: lowers the ready flag, forgets wake-ups and returns the search's number.
    int getNextThreadId();
    // Publishes a line without a report, if the number is that of the current search.
    void setVariant(const Variant& variantPar, int _threadId);
    // Publishes the report of a pass with its line, if the number is that of the current search.
    // An empty line, as of a drawn root, replaces the score but not the moves.
    void setReport(const InfoStruct& info, int _threadId);
    // Raises the ready flag and wakes the waiting thread, if the number is that of the current
    // search.
    void signalReady(int _fakeThreadId);
    // Whether the search is to end, or has ended.
    bool isReady();
    // The line and the report published last. The request's number is left at 0.
    SearchResult getResult();

    // Wakes the thread that waits for the current search, or does so later.
    void wake();
    // Waits to be woken, but no longer than `duration`.
    void waitToBeWoken(Milliseconds duration);

private:
    std::mutex pMutex; // guards the rest
    std::condition_variable woken;
    bool isWoken = false;
    bool ready = false;
    int fakeThreadId = 0; // number of the search that owns the slot
    SearchResult published;
};
