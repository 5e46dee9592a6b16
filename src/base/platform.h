// Everything that depends on the operating system beyond the standard library: the clock, the
// sleep of the polling loop, threads, the memory that a process keeps, the standard streams, and
// the ways in which a process learns that nobody needs it any more. What every system does alike
// stands in platform.cpp, the rest in platformPosix.cpp or platformWindows.cpp.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <system_error>
#include <thread>

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
    bool start(std::function<void()> body);
    // Waits for the end of the thread. False if there is none to wait for.
    bool join();

private:
    std::thread thread;
};

// Makes the process what the others expect of it: a request to terminate ends it at once and
// cleanly, writing to a reader that has gone away is an error like any other, the standard
// streams pass on bytes as they are, and a sleep ends within a millisecond or two of its time.
void prepareProcess();

// From now on the end of memory ends the process, with status 1 and one line on standard
// error. Only who allocates without `new`, as the table does, may find that there is none.
// And a large block goes back to the system when it is freed: by itself the library comes to
// keep some, up to 64 MiB for each of its arenas.
void prepareMemory();

// Whether the reader of standard output has gone away.
bool isStandardOutputLost();

// Ends the process at once with status 0, whatever its threads are doing. Nothing is
// lost by it: every line is flushed as it is sent, and no state is kept on disk.
[[noreturn]] void endProcess();

// Whether a person reads the stream in a terminal.
bool isStandardOutputTerminal();
bool isStandardErrorTerminal();

// The number by which the system knows the process, and no other one at the same time.
int getProcessNumber();

// Why the process may not write the file that is there, or make files in the folder; no error
// if it may.
std::error_code whyNoWritingTo(const std::string& file);
std::error_code whyNoFilesIn(const std::string& folder);

// From now on the process may have as many files and pipes open as the system lets it; the usual
// limit is made for fewer.
void raiseFileLimit();

// How many processes want a processor, on average over the last minute; 0 where the system does
// not tell.
double getSystemLoad();
