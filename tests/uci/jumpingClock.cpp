// Loaded before the C library, it lets the time of day jump by an hour or two, to and fro, each
// time that somebody asks for it, as where a clock is set while the engine plays. Other clocks go
// on as ever.

#include <atomic>
#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" int clock_gettime(clockid_t clock, timespec* time) {
    // Who asks twice for each look is not to see the same jump every time: there are three.
    static std::atomic<int> calls = 0;
    const auto result = static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    if (clock == CLOCK_REALTIME) {
        time->tv_sec += 3600 * (++calls % 3);
    }
    return result;
}
