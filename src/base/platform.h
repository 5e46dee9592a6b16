// Everything that depends on the operating system beyond the standard library:
// the clock, the sleep of the polling loop, the creation of a thread, the memory that a
// process keeps, and the ways in which it is told that nobody wants it any more.
#pragma once

#include <cstdint>
#include <pthread.h>

// A point in time or a span, in milliseconds of real time.
using Milliseconds = std::int64_t;

// Reads a monotonic clock. Only differences of two readings have a meaning.
Milliseconds clockMilliseconds();

// Blocks the calling thread for at least `duration` milliseconds.
void sleepMilliseconds(Milliseconds duration);

// The form of a thread's entry function, as POSIX threads want it.
using ThreadEntry = void* (*)(void*);

// Starts a joinable thread at `entry` with `argument` and stores its handle.
// False if the system gives no thread; `handle` then holds nothing of meaning.
bool createThread(pthread_t& handle, ThreadEntry entry, void* argument);

// Waits for the end of a thread that createThread() started. Once per handle.
void joinThread(pthread_t handle);

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
