#include "base/thread.h"

#include <system_error>
#include <utility>

bool Thread::start(std::function<void()> body) {
    join();
    if constexpr (!RUNS_BESIDE) {
        body();
        return true;
    }
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
