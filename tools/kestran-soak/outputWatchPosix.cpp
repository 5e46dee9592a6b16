#include "kestran-soak/outputWatch.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <sys/epoll.h>
#include <unistd.h>

namespace {

constexpr std::size_t MOST_NEWS = 256; // at once; the others are told next time

[[noreturn]] void fail() {
    throw CannotStart(std::string("output cannot be waited for: ") + std::strerror(errno));
}

} // namespace

struct OutputWatch::Watched {
    int descriptor = epoll_create1(EPOLL_CLOEXEC);
};

OutputWatch::OutputWatch() : watched(std::make_unique<Watched>()) {
    if (watched->descriptor < 0) {
        fail();
    }
}

OutputWatch::~OutputWatch() {
    close(watched->descriptor);
}

// A descriptor that is closed is no longer waited for, by itself.
void OutputWatch::add(const UciProcess& process, std::size_t id) {
    for (const SystemHandle output : process.getOutputs()) {
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.u64 = id;
        if (epoll_ctl(watched->descriptor, EPOLL_CTL_ADD, static_cast<int>(output), &event) != 0) {
            fail();
        }
    }
}

std::vector<std::size_t> OutputWatch::wait(std::chrono::milliseconds timeout) {
    std::array<epoll_event, MOST_NEWS> events;
    const int count = epoll_wait(watched->descriptor, events.data(), MOST_NEWS,
                                 static_cast<int>(timeout.count()));
    std::vector<std::size_t> ids;
    ids.reserve(MOST_NEWS);
    for (int i = 0; i < count; ++i) {
        ids.push_back(static_cast<std::size_t>(events[static_cast<std::size_t>(i)].data.u64));
    }
    std::ranges::sort(ids); // a process may have written to both its outputs
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    return ids;
}
