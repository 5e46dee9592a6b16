// Everything that depends on the operating system beyond the standard library:
// the clock, the sleep of the polling loop and the creation of a thread.
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
