#include "kestran-explain/searchLimit.h"

#include "support/commandLine.h"

#include <algorithm>
#include <ctime>

namespace {

constexpr long POLL_NANOSECONDS = 20'000'000;
// What all searches together may still take after Ctrl-C.
constexpr Milliseconds REST_AFTER_INTERRUPT = 2000;

sigset_t interruptSignal() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    return set;
}

} // namespace

SearchLimit::SearchLimit(std::optional<Milliseconds> _total) : total(_total) {
    // Blocked for every thread, so that the watcher can take it as it comes.
    const sigset_t interrupts = interruptSignal();
    pthread_sigmask(SIG_BLOCK, &interrupts, &signalsBefore);
    if (!watcher.start([this] { watch(); })) {
        pthread_sigmask(SIG_SETMASK, &signalsBefore, nullptr);
        throw UsageError("there is no thread to watch the search");
    }
}

SearchLimit::~SearchLimit() {
    isOver = true;
    watcher.join();
    pthread_sigmask(SIG_SETMASK, &signalsBefore, nullptr);
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
    const sigset_t interrupts = interruptSignal();
    const timespec pause = {0, POLL_NANOSECONDS};
    while (!isOver) {
        if (sigtimedwait(&interrupts, nullptr, &pause) == SIGINT) {
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
