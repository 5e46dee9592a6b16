#include "base/platform.h"

#include <chrono>
#include <csignal>
#include <malloc.h>
#include <poll.h>
#include <thread>
#include <unistd.h>

Milliseconds clockMilliseconds() {
    const auto sinceEpoch = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count();
}

void sleepMilliseconds(Milliseconds duration) {
    std::this_thread::sleep_for(std::chrono::milliseconds(duration));
}

bool createThread(pthread_t& handle, ThreadEntry entry, void* argument) {
    // Default attributes make the thread joinable.
    return pthread_create(&handle, nullptr, entry, argument) == 0;
}

void joinThread(pthread_t handle) {
    pthread_join(handle, nullptr);
}

void prepareSignals() {
    std::signal(SIGTERM, [](int) { endProcess(); });
    std::signal(SIGPIPE, SIG_IGN);
}

void prepareMemory() {
#ifdef M_MMAP_THRESHOLD
    constexpr int LARGE_BLOCK = 1 << 20; // bytes
    mallopt(M_MMAP_THRESHOLD, LARGE_BLOCK);
#endif
}

bool isStandardOutputLost() {
    // Errors are told without being asked for.
    pollfd output = {STDOUT_FILENO, 0, 0};
    return poll(&output, 1, 0) > 0 && (output.revents & (POLLERR | POLLNVAL)) != 0;
}

void endProcess() {
    _exit(0);
}
