#include "support/terminal.h"

#include <windows.h>

std::size_t getTerminalWidth() {
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    if (GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) == 0) {
        return 0;
    }
    return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}
