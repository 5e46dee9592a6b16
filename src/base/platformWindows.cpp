#include "base/platform.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <io.h>
#include <process.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>
// Behind windows.h, which they need.
#include <mmsystem.h>
#include <winternl.h>

namespace {

// What the system tells of an end of a pipe, in its own order. The headers have no name for it.
struct PipeInformation {
    ULONG type;
    ULONG configuration;
    ULONG maximumInstances;
    ULONG currentInstances;
    ULONG inboundQuota;
    ULONG readDataAvailable;
    ULONG outboundQuota;
    ULONG writeQuotaAvailable;
    ULONG state;
    ULONG end;
};
constexpr auto PIPE_INFORMATION = static_cast<FILE_INFORMATION_CLASS>(24);
constexpr ULONG PIPE_CONNECTED = 3; // the state in which the other end is there

// The window is closed, the user leaves, or the system goes down. Ctrl-C has its usual effect.
BOOL WINAPI endOnRequest(DWORD request) {
    if (request == CTRL_C_EVENT) {
        return FALSE;
    }
    endProcess();
}

} // namespace

void sleepMilliseconds(Milliseconds duration) {
    // The system rounds to its own ticks, also down.
    const Milliseconds end = clockMilliseconds() + duration;
    for (Milliseconds left = duration; left > 0; left = end - clockMilliseconds()) {
        Sleep(static_cast<DWORD>(left));
    }
}

void prepareProcess() {
    SetConsoleCtrlHandler(endOnRequest, TRUE);
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    timeBeginPeriod(1);
}

bool isStandardOutputLost() {
    const auto output = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stdout)));
    IO_STATUS_BLOCK status{};
    PipeInformation pipe{};
    // What is no pipe, or tells nothing, shows itself when it is written to.
    return NtQueryInformationFile(output, &status, &pipe, sizeof pipe, PIPE_INFORMATION) == 0 &&
           pipe.state != PIPE_CONNECTED;
}

bool isStandardOutputTerminal() {
    return _isatty(_fileno(stdout)) != 0;
}

bool isStandardErrorTerminal() {
    return _isatty(_fileno(stderr)) != 0;
}

int getProcessNumber() {
    return _getpid();
}

std::error_code whyNoWritingTo(const std::string& file) {
    constexpr int TO_WRITE = 2;
    return _access(file.c_str(), TO_WRITE) == 0 ? std::error_code()
                                                : std::error_code(errno, std::generic_category());
}

// Which files a folder takes is known only when one is made.
std::error_code whyNoFilesIn(const std::string& folder) {
    std::error_code fault;
    return std::filesystem::is_directory(folder, fault)
               ? std::error_code()
               : std::make_error_code(std::errc::no_such_file_or_directory);
}

// There is no such limit.
void raiseFileLimit() {
}

double getSystemLoad() {
    return 0;
}
