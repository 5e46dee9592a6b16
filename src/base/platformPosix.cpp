#include "base/platform.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <new>
#include <poll.h>
#include <pthread.h>
#include <string_view>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <utility>
#if __has_include(<malloc.h>)
#include <malloc.h>
#endif

namespace {

// The form of an entry that POSIX threads want.
void* runBody(void* body) {
    (*static_cast<std::function<void()>*>(body))();
    return nullptr;
}

std::error_code whyNoAccess(const std::string& path, int mode) {
    return access(path.c_str(), mode) == 0 ? std::error_code()
                                           : std::error_code(errno, std::generic_category());
}

} // namespace

Milliseconds clockMilliseconds() {
    const auto sinceEpoch = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count();
}

void sleepMilliseconds(Milliseconds duration) {
    std::this_thread::sleep_for(std::chrono::milliseconds(duration));
}

struct Thread::Handle {
    pthread_t thread;
};

Thread::Thread() = default;

Thread::~Thread() {
    join();
}

bool Thread::start(std::function<void()> _body) {
    join();
    body = std::move(_body);
    auto created = std::make_unique<Handle>();
    // Default attributes make the thread joinable.
    if (pthread_create(&created->thread, nullptr, runBody, &body) != 0) {
        return false;
    }
    handle = std::move(created);
    return true;
}

bool Thread::join() {
    if (!handle) {
        return false;
    }
    pthread_join(handle->thread, nullptr);
    handle.reset();
    return true;
}

void prepareProcess() {
    std::signal(SIGTERM, [](int) { endProcess(); });
    std::signal(SIGPIPE, SIG_IGN);
}

void prepareMemory() {
    // Rather here than where an exception would end up: a stream takes one for the end of its
    // text, and a thread for a reason to abort.
    std::set_new_handler([] {
        constexpr std::string_view TEXT = "kestran: out of memory\n";
        // Nobody is left to be told that this fails.
        [[maybe_unused]] const auto written = write(STDERR_FILENO, TEXT.data(), TEXT.size());
        _exit(1);
    });
#ifdef M_MMAP_THRESHOLD
    constexpr int LARGE_BLOCK = 1 << 20; // bytes
    mallopt(M_MMAP_THRESHOLD, LARGE_BLOCK);
#endif
}

bool isStandardOutputLost() {
    // poll() reports errors without being asked to.
    pollfd output = {STDOUT_FILENO, 0, 0};
    return poll(&output, 1, 0) > 0 && (output.revents & (POLLERR | POLLNVAL)) != 0;
}

void endProcess() {
    _exit(0);
}

bool isStandardOutputTerminal() {
    return isatty(STDOUT_FILENO) != 0;
}

bool isStandardErrorTerminal() {
    return isatty(STDERR_FILENO) != 0;
}

int getProcessNumber() {
    return getpid();
}

std::error_code whyNoWritingTo(const std::string& file) {
    return whyNoAccess(file, W_OK);
}

std::error_code whyNoFilesIn(const std::string& folder) {
    return whyNoAccess(folder + "/.", W_OK | X_OK); // the dot asks for a folder
}

void raiseFileLimit() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        setrlimit(RLIMIT_NOFILE, &limit);
    }
}

double getSystemLoad() {
    std::array<double, 1> load{};
    return getloadavg(load.data(), 1) == 1 ? load[0] : 0;
}
