// The slot that a search thread shares with the thread that waits for it: the line
// published last, and the flag that ends the search.
#pragma once

#include "search/variant.h"

#include <mutex>

// Every search draws a number first. A thread of an older search still holds the old
// number, so whatever it calls has no effect on the new one. Safe from any thread.
class IdaVariant {
public:
    // Opens a search: lowers the ready flag and returns the new search's number.
    int getNextThreadId();
    // Publishes a line, if the number is that of the present search.
    void setVariant(const Variant& variantPar, int _threadId);
    // Raises the ready flag, if the number is that of the present search.
    void signalReady(int _fakeThreadId);
    // Whether the search is to end, or has ended.
    bool isReady();
    // A copy of the line published last.
    Variant getVariant();

private:
    std::mutex pMutex; // guards the rest
    bool ready = false;
    int fakeThreadId = 0; // number of the search that owns the slot
    Variant variant;
};
