#include "support/terminal.h"

#include <cstdlib>
#include <iostream>
#include <unistd.h>

std::string_view getVariable(const char* name) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr ? value : "";
}

bool isStandardOutputTerminal() {
    return isatty(STDOUT_FILENO) != 0;
}

bool isColourWanted() {
    return isStandardOutputTerminal() && getVariable("NO_COLOR").empty() &&
           getVariable("TERM") != "dumb";
}

Progress::Progress() : isShown(isatty(STDERR_FILENO) != 0 && getVariable("TERM") != "dumb") {
}

void Progress::show(const std::string& text) {
    if (isShown) {
        std::cerr << "\r\x1b[K" << text << std::flush;
    }
}
