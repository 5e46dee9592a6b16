#include "base/platform.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <poll.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace {

std::error_code whyNoAccess(const std::string& path, int mode) {
    return access(path.c_str(), mode) == 0 ? std::error_code()
                                           : std::error_code(errno, std::generic_category());
}

} // namespace

void sleepMilliseconds(Milliseconds duration) {
    std::this_thread::sleep_for(std::chrono::milliseconds(duration));
}

void prepareProcess() {
    std::signal(SIGTERM, [](int) { endProcess(); });
    std::signal(SIGPIPE, SIG_IGN);
}

bool isStandardOutputLost() {
    // poll() reports errors without being asked to.
    pollfd output = {STDOUT_FILENO, 0, 0};
    return poll(&output, 1, 0) > 0 && (output.revents & (POLLERR | POLLNVAL)) != 0;
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
