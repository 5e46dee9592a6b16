#include "kestran-soak/outputWatch.h"

#include "base/clock.h"

#include <algorithm>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace {

// Pipes cannot be waited for, so they are asked so often.
constexpr Milliseconds POLL_INTERVAL = 1;

struct Output {
    HANDLE handle;
    std::size_t id;
};

} // namespace

struct OutputWatch::Watched {
    std::vector<Output> outputs;

    // Those that have something to tell; forgets what has been closed.
    std::vector<std::size_t> ask() {
        std::vector<std::size_t> ids;
        std::erase_if(outputs, [&ids](const Output& output) {
            DWORD count = 0;
            const bool isOpen =
                PeekNamedPipe(output.handle, nullptr, 0, nullptr, &count, nullptr) != 0;
            if (!isOpen || count > 0) {
                ids.push_back(output.id);
            }
            return !isOpen && GetLastError() == ERROR_INVALID_HANDLE;
        });
        std::ranges::sort(ids); // a process may have written to both its outputs
        ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
        return ids;
    }
};

OutputWatch::OutputWatch() : watched(std::make_unique<Watched>()) {
}

OutputWatch::~OutputWatch() = default;

// The process is the only one of this name; the system may give handles of an earlier one again.
void OutputWatch::add(const UciProcess& process, std::size_t id) {
    std::erase_if(watched->outputs, [id](const Output& output) { return output.id == id; });
    for (const SystemHandle output : process.getOutputs()) {
        watched->outputs.push_back({reinterpret_cast<HANDLE>(output), id});
    }
}

std::vector<std::size_t> OutputWatch::wait(std::chrono::milliseconds timeout) {
    const Milliseconds end = clockMilliseconds() + timeout.count();
    std::vector<std::size_t> ids = watched->ask();
    while (ids.empty() && clockMilliseconds() < end) {
        sleepMilliseconds(POLL_INTERVAL);
        ids = watched->ask();
    }
    return ids;
}
