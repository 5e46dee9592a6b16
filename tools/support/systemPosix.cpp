#include "support/system.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

std::error_code whyNoAccess(const std::string& path, int mode) {
    return access(path.c_str(), mode) == 0 ? std::error_code()
                                           : std::error_code(errno, std::generic_category());
}

} // namespace

bool isStandardOutputTerminal() {
    return isatty(STDOUT_FILENO) != 0;
}

bool isStandardErrorTerminal() {
    return isatty(STDERR_FILENO) != 0;
}

std::size_t getTerminalWidth() {
    winsize size = {};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

int getProcessNumber() {
    return getpid();
}

std::error_code whyNoWritingTo(const std::string& file) {
    return whyNoAccess(file, W_OK);
}

std::error_code whyNoFilesIn(const std::string& folder) {
    return whyNoAccess(folder + "/.", W_OK | X_OK); // the dot fails if it is not a folder
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
