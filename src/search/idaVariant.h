// The slot that a search thread shares with the thread that waits for it: the line
// published last, and the flag that ends the search.
#pragma once

#include "search/infoStruct.h"

#include <condition_variable>
#include <mutex>

// Every search draws a number first. A thread of an older search still holds the old
// number, so whatever it calls has no effect on the new one. Safe from any thread.
class IdaVariant {
public:
    // Opens a search, for which nobody has been woken yet: lowers the ready flag and returns the
    // new search's number.
    int getNextThreadId();
    // Publishes a line, if the number is that of the present search.
    void setVariant(const Variant& variantPar, int _threadId);
    // Publishes the line of a pass with all that is told of it, if its number is that of the
    // present search. A line without moves, as of a drawn root, leaves the moves that are there.
    void setReport(const InfoStruct& info);
    // Raises the ready flag and wakes who waits, if the number is that of the present search.
    void signalReady(int _fakeThreadId);
    // Whether the search is to end, or has ended.
    bool isReady();
    // A copy of the line published last, and of the report that it came with: all zero but the
    // line if there was none.
    Variant getVariant();
    InfoStruct getReport();

    // Wakes who waits for the present search, now or next.
    void wake();
    // Waits to be woken, but no longer than `duration`.
    void waitToBeWoken(Milliseconds duration);

private:
    std::mutex pMutex; // guards the rest
    std::condition_variable woken;
    bool isWoken = false;
    bool ready = false;
    int fakeThreadId = 0; // number of the search that owns the slot
    InfoStruct report{};
};
