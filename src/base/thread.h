// A thread that its owner starts and joins.
#pragma once

#include <functional>
#include <thread>

// Can be started again after each run. The destructor waits for the thread to end.
class Thread {
public:
    Thread() = default;
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;
    ~Thread() { join(); }

    // False in WebAssembly without threads: start() then runs the body to its end.
#if defined(__EMSCRIPTEN__) && !defined(__EMSCRIPTEN_PTHREADS__)
    static constexpr bool RUNS_BESIDE = false;
#else
    static constexpr bool RUNS_BESIDE = true;
#endif

    // Waits for the previous run to end, then runs `body` on a new thread. Returns false, and runs
    // nothing, if the system cannot create a thread.
    bool start(std::function<void()> body);
    // Waits for the thread to end. Returns false if none was started since the last join.
    bool join();

private:
    std::thread thread;
};
