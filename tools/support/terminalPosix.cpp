#include "support/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

std::size_t getTerminalWidth() {
    winsize size = {};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}
