#include "support/system.h"

#include <sys/ioctl.h>
#include <sys/resource.h>
#include <unistd.h>

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

void raiseFileLimit() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        setrlimit(RLIMIT_NOFILE, &limit);
    }
}
