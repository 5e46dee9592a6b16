#include "base/platform.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <utility>
#if __has_include(<malloc.h>)
#include <malloc.h>
#endif

Milliseconds clockMilliseconds() {
    const auto sinceEpoch = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count();
}

bool Thread::start(std::function<void()> body) {
    join();
    try {
        thread = std::thread(std::move(body));
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

bool Thread::join() {
    if (!thread.joinable()) {
        return false;
    }
    thread.join();
    return true;
}

void prepareMemory() {
    // Rather here than where an exception would end up: a stream takes one for the end of its
    // text, and a thread for a reason to abort.
    std::set_new_handler([] {
        std::fputs("kestran: out of memory\n", stderr);
        std::_Exit(1);
    });
#ifdef M_MMAP_THRESHOLD // where a large block does not go back to the system by itself
    constexpr int LARGE_BLOCK = 1 << 20; // bytes
    mallopt(M_MMAP_THRESHOLD, LARGE_BLOCK);
#endif
}

void endProcess() {
    std::_Exit(0);
}
