#include "support/terminal.h"

#include "support/system.h"

#include <cstdlib>
#include <iostream>
#include <string_view>

namespace {

std::string_view environmentOf(const char* name) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr ? value : "";
}

bool isTerminalDumb() {
    return environmentOf("TERM") == "dumb";
}

} // namespace

bool isColourWanted() {
    return isStandardOutputTerminal() && environmentOf("NO_COLOR").empty() && !isTerminalDumb();
}

Progress::Progress() : isShown(isStandardErrorTerminal() && !isTerminalDumb()) {
}

Progress::~Progress() {
    show("");
}

void Progress::show(const std::string& text) {
    if (isShown) {
        std::cerr << "\r\x1b[K" << text << std::flush;
    }
}
