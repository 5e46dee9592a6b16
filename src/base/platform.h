// Everything that depends on the operating system beyond the standard library:
// the clock, the sleep of the polling loop, threads, the memory that a process keeps, and
// the ways in which it learns that nobody needs it any more.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <pthread.h>

// A point in time or a span, in milliseconds of real time.
using Milliseconds = std::int64_t;

// Reads a monotonic clock. Only differences of two readings have a meaning.
Milliseconds clockMilliseconds();

// Blocks the calling thread for at least `duration` milliseconds.
void sleepMilliseconds(Milliseconds duration);

// A thread that is started and joined by its owner, again and again. The end of the
// object waits for it.
class Thread {
public:
    Thread() = default;
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;
    ~Thread() { join(); }

    // Runs `_body` on a thread of its own, after the one before has been joined. False if
    // the system gives no thread; nothing runs then.
    bool start(std::function<void()> _body);
    // Waits for the end of the thread. False if there is none to wait for.
    bool join();

private:
    static void* run(void* thread);

    std::function<void()> body;
    std::optional<pthread_t> handle; // of a thread that has not been joined
};

// From now on a request to terminate ends the process at once and cleanly, and writing
// to a reader that has gone away is an error like any other.
void prepareSignals();

// From now on a large block of memory goes back to the system when it is freed. By
// itself the library comes to keep some, up to 64 MiB for each of its arenas.
void prepareMemory();

// Whether the reader of standard output has gone away.
bool isStandardOutputLost();

// Ends the process at once with status 0, whatever its threads are doing. Nothing is
// lost by it: every line is flushed as it is sent, and no state is kept on disk.
[[noreturn]] void endProcess();
