#include "support/terminal.h"

#include <cstdlib>
#include <iostream>
#include <unistd.h>

namespace {

bool isTerminalDumb() {
    return getVariable("TERM") == "dumb";
}

} // namespace

std::string_view getVariable(const char* name) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr ? value : "";
}

bool isStandardOutputTerminal() {
    return isatty(STDOUT_FILENO) != 0;
}

bool isColourWanted() {
    return isStandardOutputTerminal() && getVariable("NO_COLOR").empty() && !isTerminalDumb();
}

Progress::Progress() : isShown(isatty(STDERR_FILENO) != 0 && !isTerminalDumb()) {
}

Progress::~Progress() {
    show("");
}

void Progress::show(const std::string& text) {
    if (isShown) {
        std::cerr << "\r\x1b[K" << text << std::flush;
    }
}
