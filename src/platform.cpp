#include "platform.h"

#include <chrono>
#include <thread>

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
