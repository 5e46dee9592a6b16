#include "kestran-explain/searchLimit.h"

#include "support/text.h"

#include <algorithm>

namespace {

constexpr Milliseconds POLL_INTERVAL = 20;
// What all searches together may still take after an interrupt.
constexpr Milliseconds REST_AFTER_INTERRUPT = 2000;

std::atomic<bool> isInterrupted = false; // since the watcher has looked last

void noteInterrupt(int signal) {
    isInterrupted = true;
    std::signal(signal, noteInterrupt); // some systems forget a handler when they call it
}

} // namespace

SearchLimit::SearchLimit(std::optional<Milliseconds> _total) : total(_total) {
    isInterrupted = false;
    for (std::size_t i = 0; i < SIGNALS.size(); ++i) {
        handlersBefore[i] = std::signal(SIGNALS[i], noteInterrupt);
    }
    if (!watcher.start([this] { watch(); })) {
        restoreHandlers();
        throw UsageError("there is no thread to watch the search");
    }
}

SearchLimit::~SearchLimit() {
    isOver = true;
    watcher.join();
    restoreHandlers();
}

void SearchLimit::restoreHandlers() {
    for (std::size_t i = 0; i < SIGNALS.size(); ++i) {
        std::signal(SIGNALS[i], handlersBefore[i]);
    }
}

IdaVariant& SearchLimit::begin(double part) {
    const std::lock_guard lock(mutex);
    searchId = slot.getNextThreadId();
    deadline = latest;
    if (total) {
        const auto end = start + static_cast<Milliseconds>(part * static_cast<double>(*total));
        deadline = std::min(end, latest.value_or(end));
    }
    return slot;
}

// Raises the flag of the slot when it is time, as long as the object lives.
void SearchLimit::watch() {
    while (!isOver) {
        sleepMilliseconds(POLL_INTERVAL);
        if (isInterrupted.exchange(false)) {
            interrupt();
        }
        const std::lock_guard lock(mutex);
        if (deadline && clockMilliseconds() >= *deadline) {
            slot.signalReady(searchId);
        }
    }
}

void SearchLimit::interrupt() {
    const std::lock_guard lock(mutex);
    deadline = clockMilliseconds();
    latest = latest.value_or(*deadline + REST_AFTER_INTERRUPT);
}
