// How long a process waits for a processor while others have it: what is late by that is late
// by a busy machine.
#pragma once

#include <cstdint>
#include <map>

class ProcessorWaits {
public:
    // Begins to count.
    explicit ProcessorWaits(int pid);

    // Counts from now on.
    void restart();
    // Of all threads that live, together, since the last restart. 0 for a process that has ended,
    // and where the system does not tell.
    std::int64_t getMillis() const;

private:
    int process;
    std::map<int, std::int64_t> before; // nanoseconds of each thread, by its number
};
