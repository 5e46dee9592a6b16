#include "base/clock.h"

#include <chrono>
#include <thread>

Milliseconds clockMilliseconds() {
    const auto sinceEpoch = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count();
}

void sleepMilliseconds(Milliseconds duration) {
    // Repeats, because Windows rounds a sleep to its own ticks, down as well as up.
    const Milliseconds end = clockMilliseconds() + duration;
    for (Milliseconds left = duration; left > 0; left = end - clockMilliseconds()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(left));
    }
}
