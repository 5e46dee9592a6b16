// WaitPolicy for the output of hundreds of processes at once.
#pragma once

#include "support/uciProcess.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <vector>

class OutputWatch {
public:
    // CannotStart if the system refuses.
    OutputWatch();
    OutputWatch(const OutputWatch&) = delete;
    OutputWatch& operator=(const OutputWatch&) = delete;
    ~OutputWatch();

    // From now on wait() tells of this process by `id`, until both its outputs have ended.
    // CannotStart if the system refuses.
    void add(const UciProcess& process, std::size_t id);
    // The processes that have output to take, or whose output has ended; none if nothing
    // comes in time or a signal has come.
    std::vector<std::size_t> wait(std::chrono::milliseconds timeout);

private:
    struct Watched; // what the system is asked about

    std::unique_ptr<Watched> watched;
};
