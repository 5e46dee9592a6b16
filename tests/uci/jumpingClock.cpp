// Preloaded into the engine, it makes the time of day jump by an hour or two at each call, as if
// the clock were set during play. Other clocks are not changed.

#include <atomic>
#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" int clock_gettime(clockid_t clock, timespec* time) {
    // Three jumps in turn, so that two calls per poll do not always see the same one.
    static std::atomic<int> calls = 0;
    const auto result = static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    if (clock == CLOCK_REALTIME) {
        time->tv_sec += 3600 * (++calls % 3);
    }
    return result;
}
