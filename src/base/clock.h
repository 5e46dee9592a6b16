// The clock and the sleep of the process, in milliseconds.
#pragma once

#include <cstdint>

// A point in time or a duration, in milliseconds of real time.
using Milliseconds = std::int64_t;

// Reads a monotonic clock. Only differences between readings are meaningful.
Milliseconds clockMilliseconds();

// Blocks the calling thread for at least `duration` milliseconds.
void sleepMilliseconds(Milliseconds duration);
