#include "support/uciProcess.h"

#include "base/clock.h"

#include <array>
#include <mutex>
#include <system_error>
#include <utility>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>
// After windows.h, which it needs.
#include <psapi.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr DWORD PIPE_SIZE = 1 << 16; // bytes
constexpr UINT KILLED = 1;           // the status of a process that was ended from outside
// Pipes cannot be waited for, so they are asked so often.
constexpr Milliseconds POLL_INTERVAL = 1;

HANDLE handleOf(SystemHandle handle) {
    return reinterpret_cast<HANDLE>(handle);
}

SystemHandle nameOf(HANDLE handle) {
    return reinterpret_cast<SystemHandle>(handle);
}

std::string lastFault() {
    return std::system_category().message(static_cast<int>(GetLastError()));
}

// A pipe of which a child inherits the one end that is its own.
struct Pipe {
    explicit Pipe(bool isChildReader) {
        SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
        if (CreatePipe(&reader, &writer, &inherited, PIPE_SIZE) == 0) {
            throw CannotStart("no pipe: " + lastFault());
        }
        SetHandleInformation(isChildReader ? writer : reader, HANDLE_FLAG_INHERIT, 0);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        for (const HANDLE end : {reader, writer}) {
            if (end != nullptr) {
                CloseHandle(end);
            }
        }
    }

    HANDLE reader = nullptr;
    HANDLE writer = nullptr;
};

// The word as the C library of the child reads it back: in quotes, with a backslash before each
// quote, and backslashes before a quote doubled.
std::string quoted(const std::string& word) {
    std::string text = "\"";
    std::size_t backslashes = 0;
    for (const char letter : word) {
        if (letter == '"') {
            text.append(backslashes + 1, '\\');
        }
        backslashes = letter == '\\' ? backslashes + 1 : 0;
        text += letter;
    }
    return text.append(backslashes, '\\') + '"';
}

Milliseconds toMillis(const FILETIME& span) {
    constexpr Milliseconds UNITS_IN_A_MILLISECOND = 10000;
    return ((static_cast<Milliseconds>(span.dwHighDateTime) << 32) + span.dwLowDateTime) /
           UNITS_IN_A_MILLISECOND;
}

} // namespace

UciProcess::UciProcess(const std::string& path, const std::vector<std::string>& arguments) {
    // Another process that is started at the same time would inherit these pipes.
    static std::mutex starting;
    const std::lock_guard lock(starting);
    Pipe toEngine(true);
    Pipe fromEngine(false);
    Pipe errorsOfEngine(false);
    std::string line = quoted(path);
    for (const std::string& argument : arguments) {
        line += ' ' + quoted(argument);
    }
    STARTUPINFOA start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = toEngine.reader;
    start.hStdOutput = fromEngine.writer;
    start.hStdError = errorsOfEngine.writer;
    PROCESS_INFORMATION started{};
    if (CreateProcessA(path.c_str(), line.data(), nullptr, nullptr, TRUE,
                       CREATE_NO_WINDOW | CREATE_NEW_PROCESS_GROUP, nullptr, nullptr, &start,
                       &started) == 0) {
        throw CannotStart("cannot start " + path + ": " + lastFault());
    }
    CloseHandle(started.hThread);
    process = nameOf(started.hProcess);
    DWORD withoutWaiting = PIPE_NOWAIT;
    SetNamedPipeHandleState(toEngine.writer, &withoutWaiting, nullptr, nullptr);
    input = nameOf(std::exchange(toEngine.writer, nullptr));
    output = nameOf(std::exchange(fromEngine.reader, nullptr));
    errors = nameOf(std::exchange(errorsOfEngine.reader, nullptr));
}

void UciProcess::kill() {
    TerminateProcess(handleOf(process), KILLED);
    WaitForSingleObject(handleOf(process), INFINITE);
    closeEnd(process);
}

std::optional<std::size_t> UciProcess::writeSome(std::string_view bytes) {
    DWORD count = 0;
    const auto wanted = static_cast<DWORD>(bytes.size());
    if (WriteFile(handleOf(input), bytes.data(), wanted, &count, nullptr) == 0) {
        return std::nullopt;
    }
    return count;
}

void UciProcess::drain(SystemHandle& from, std::string& into) {
    std::array<char, PIPE_SIZE> buffer;
    while (from != NO_HANDLE) {
        DWORD count = 0;
        if (PeekNamedPipe(handleOf(from), nullptr, 0, nullptr, &count, nullptr) == 0) {
            closeEnd(from);
        } else if (count == 0) {
            return;
        } else if (ReadFile(handleOf(from), buffer.data(), PIPE_SIZE, &count, nullptr) != 0) {
            into.append(buffer.data(), count);
        }
    }
}

void UciProcess::closeEnd(SystemHandle& end) {
    if (end != NO_HANDLE) {
        CloseHandle(handleOf(std::exchange(end, NO_HANDLE)));
    }
}

std::optional<UciProcess::End> UciProcess::askForEnd() const {
    DWORD status = 0;
    if (WaitForSingleObject(handleOf(process), 0) != WAIT_OBJECT_0 ||
        GetExitCodeProcess(handleOf(process), &status) == 0) {
        return std::nullopt;
    }
    return End{true, static_cast<int>(status)};
}

int UciProcess::getPid() const {
    return static_cast<int>(GetProcessId(handleOf(process)));
}

void UciProcess::sendSignal(int /*signal*/) {
    TerminateProcess(handleOf(process), KILLED);
}

std::int64_t UciProcess::getResidentKib() const {
    PROCESS_MEMORY_COUNTERS memory{};
    memory.cb = sizeof memory;
    K32GetProcessMemoryInfo(handleOf(process), &memory, sizeof memory);
    return end ? 0 : static_cast<std::int64_t>(memory.WorkingSetSize / 1024);
}

std::int64_t UciProcess::getProcessorMillis() const {
    FILETIME begun{};
    FILETIME ended{};
    FILETIME system{};
    FILETIME user{};
    if (end || GetProcessTimes(handleOf(process), &begun, &ended, &system, &user) == 0) {
        return 0;
    }
    return toMillis(system) + toMillis(user);
}

bool UciProcess::pump(Timeout timeout, bool wantRoom) {
    const Clock::time_point deadline = Clock::now() + timeout;
    const std::size_t before = pending.size() + errorText.size();
    const bool wasOver = isOutputOver();
    takeOutput();
    // Whether there is room is known only when something is written.
    while (!wantRoom && pending.size() + errorText.size() == before && isOutputOver() == wasOver &&
           Clock::now() < deadline) {
        sleepMilliseconds(POLL_INTERVAL);
        takeOutput();
    }
    if (wantRoom) {
        sleepMilliseconds(POLL_INTERVAL);
    }
    return wantRoom;
}
