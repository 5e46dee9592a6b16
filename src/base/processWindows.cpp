#include "base/process.h"

#include <cstdio>
#include <fcntl.h>
#include <io.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>
// These need windows.h.
#include <mmsystem.h>
#include <winternl.h>

namespace {

// The system's information about one end of a pipe; the headers do not declare it.
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
constexpr ULONG PIPE_CONNECTED = 3; // the other end is open

// Handles the closing of the window, a logoff and a shutdown. Ctrl-C keeps its usual effect.
BOOL WINAPI endOnRequest(DWORD request) {
    if (request == CTRL_C_EVENT) {
        return FALSE;
    }
    endProcess();
}

} // namespace

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
    // If this is not a pipe or the query fails, the next write reports the loss.
    return NtQueryInformationFile(output, &status, &pipe, sizeof pipe, PIPE_INFORMATION) == 0 &&
           pipe.state != PIPE_CONNECTED;
}
