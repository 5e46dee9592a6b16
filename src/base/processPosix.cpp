#include "base/process.h"

#include <csignal>
#include <poll.h>
#include <unistd.h>

void prepareProcess() {
    std::signal(SIGTERM, [](int) { endProcess(); });
    std::signal(SIGPIPE, SIG_IGN);
}

bool isStandardOutputLost() {
    pollfd output = {STDOUT_FILENO, 0, 0}; // poll() always reports errors
    return poll(&output, 1, 0) > 0 && (output.revents & (POLLERR | POLLNVAL)) != 0;
}
