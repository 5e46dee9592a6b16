// What ends the searches of one run: the clock, Ctrl-C, and SIGTERM.
#pragma once

#include "base/clock.h"
#include "base/thread.h"
#include "search/idaVariant.h"

#include <array>
#include <atomic>
#include <csignal>
#include <mutex>
#include <optional>

// While such an object lives, Ctrl-C or SIGTERM ends a search and not the process; what is still to
// be searched then gets little time. The searches run one after the other, on the thread that has
// made the object.
class SearchLimit {
public:
    // `_total` milliseconds from now on for all searches together, or no limit. UsageError if
    // the system gives no thread to watch them.
    explicit SearchLimit(std::optional<Milliseconds> _total);
    SearchLimit(const SearchLimit&) = delete;
    SearchLimit& operator=(const SearchLimit&) = delete;
    ~SearchLimit();

    // Begins a search: the slot that ends it when this part of the whole time, 0 to 1, is over.
    IdaVariant& begin(double part);

private:
    static constexpr std::array SIGNALS = {SIGINT, SIGTERM};

    void watch();
    void interrupt();
    void restoreHandlers();

    const Milliseconds start = clockMilliseconds();
    const std::optional<Milliseconds> total;
    IdaVariant slot;
    std::mutex mutex;                     // guards the next three
    std::optional<Milliseconds> deadline; // of the search under way, as the clock shows it
    std::optional<Milliseconds> latest;   // of all searches, once interrupted
    int searchId = 0;                     // of the search under way, in the slot
    std::atomic<bool> isOver = false;
    std::array<void (*)(int), 2> handlersBefore; // by SIGNALS
    Thread watcher;
};
