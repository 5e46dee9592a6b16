#include "support/system.h"

#include <cstdio>
#include <io.h>
#include <windows.h>

bool isStandardOutputTerminal() {
    return _isatty(_fileno(stdout)) != 0;
}

bool isStandardErrorTerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

std::size_t getTerminalWidth() {
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    if (GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) == 0) {
        return 0;
    }
    return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}

// Windows has no such limit.
void raiseFileLimit() {
}
