// The process of an engine: signals, memory, standard streams, and termination. The parts that
// depend on the system are in processPosix.cpp and processWindows.cpp.
#pragma once

// Prepares the process of an engine. After this call
// - a request to terminate ends the process at once with status 0,
// - writing to a closed pipe fails instead of raising a signal,
// - the standard streams pass bytes through unchanged,
// - a sleep is at most a millisecond or two too long.
void prepareProcess();

// After this call, running out of memory exits with status 1 and one line on standard error.
// Code that allocates without `new` (the hash table) can still handle the failure. Large blocks
// return to the system when they are freed; otherwise glibc may keep up to 64 MiB per arena.
void prepareMemory();

// Whether the reader of standard output has closed its end.
bool isStandardOutputLost();

// Ends the process at once with status 0, whatever its threads are doing. Loses no output:
// each line is flushed as it is sent.
[[noreturn]] void endProcess();
