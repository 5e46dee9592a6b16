#include "base/platform.h"

#include <chrono>
#include <csignal>
#include <malloc.h>
#include <poll.h>
#include <thread>
#include <unistd.h>
#include <utility>

Milliseconds clockMilliseconds() {
    const auto sinceEpoch = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count();
}

void sleepMilliseconds(Milliseconds duration) {
    std::this_thread::sleep_for(std::chrono::milliseconds(duration));
}

bool Thread::start(std::function<void()> _body) {
    join();
    body = std::move(_body);
    pthread_t created;
    // Default attributes make the thread joinable.
    if (pthread_create(&created, nullptr, run, this) != 0) {
        return false;
    }
    handle = created;
    return true;
}

bool Thread::join() {
    if (!handle) {
        return false;
    }
    pthread_join(*handle, nullptr);
    handle.reset();
    return true;
}

// The form of an entry that POSIX threads want.
void* Thread::run(void* thread) {
    static_cast<Thread*>(thread)->body();
    return nullptr;
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
    // poll() reports errors without being asked to.
    pollfd output = {STDOUT_FILENO, 0, 0};
    return poll(&output, 1, 0) > 0 && (output.revents & (POLLERR | POLLNVAL)) != 0;
}

void endProcess() {
    _exit(0);
}
