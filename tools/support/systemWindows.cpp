#include "support/system.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <io.h>
#include <process.h>
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

int getProcessNumber() {
    return _getpid();
}

std::error_code whyNoWritingTo(const std::string& file) {
    constexpr int TO_WRITE = 2;
    return _access(file.c_str(), TO_WRITE) == 0 ? std::error_code()
                                                : std::error_code(errno, std::generic_category());
}

// Whether a folder accepts a file is known only when one is created.
std::error_code whyNoFilesIn(const std::string& folder) {
    std::error_code fault;
    return std::filesystem::is_directory(folder, fault)
               ? std::error_code()
               : std::make_error_code(std::errc::no_such_file_or_directory);
}

// Windows has no such limit.
void raiseFileLimit() {
}

double getSystemLoad() {
    return 0;
}
