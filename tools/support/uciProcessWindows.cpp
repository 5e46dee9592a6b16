#include "support/uciProcess.h"

#include "base/clock.h"
#include "support/text.h"

#include <system_error>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>
// After windows.h, which it needs.
#include <psapi.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr DWORD PIPE_SIZE = 1 << 16; // bytes
constexpr UINT KILLED = 1;           // the status of a process that was ended from outside
// Pipes cannot be waited for, so they are asked so often.
constexpr UciProcess::Timeout POLL_INTERVAL{1};

HANDLE handleOf(SystemHandle handle) {
    return reinterpret_cast<HANDLE>(handle);
}

std::string lastFault() {
    return std::system_category().message(static_cast<int>(GetLastError()));
}

} // namespace

void PipeEnd::close() {
    if (isOpen()) {
        CloseHandle(handleOf(std::exchange(handle, NO_HANDLE)));
    }
}

Pipe UciProcess::makePipe() {
    HANDLE reader = nullptr;
    HANDLE writer = nullptr;
    if (CreatePipe(&reader, &writer, nullptr, PIPE_SIZE) == 0) {
        throw UsageError("no pipe: " + lastFault());
    }
    return {PipeEnd(reinterpret_cast<SystemHandle>(reader)),
            PipeEnd(reinterpret_cast<SystemHandle>(writer))};
}

void UciProcess::start(std::vector<std::string>& words,
                       const std::array<SystemHandle, 3>& streams) {
    for (const SystemHandle stream : streams) {
        SetHandleInformation(handleOf(stream), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    }
    std::string line;
    for (const std::string& word : words) {
        line += '"' + word + "\" ";
    }
    STARTUPINFOA start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = handleOf(streams[0]);
    start.hStdOutput = handleOf(streams[1]);
    start.hStdError = handleOf(streams[2]);
    PROCESS_INFORMATION started{};
    if (CreateProcessA(words[0].c_str(), line.data(), nullptr, nullptr, TRUE,
                       CREATE_NO_WINDOW | CREATE_NEW_PROCESS_GROUP, nullptr, nullptr, &start,
                       &started) == 0) {
        throw UsageError("cannot start " + words[0] + ": " + lastFault());
    }
    CloseHandle(started.hThread);
    process = reinterpret_cast<SystemHandle>(started.hProcess);
    DWORD withoutWaiting = PIPE_NOWAIT;
    SetNamedPipeHandleState(handleOf(input.get()), &withoutWaiting, nullptr, nullptr);
}

void UciProcess::kill() {
    TerminateProcess(handleOf(process), KILLED);
    WaitForSingleObject(handleOf(process), INFINITE);
    CloseHandle(handleOf(process));
}

std::optional<std::size_t> UciProcess::writeSome(std::string_view bytes) {
    DWORD count = 0;
    const auto wanted = static_cast<DWORD>(bytes.size());
    if (WriteFile(handleOf(input.get()), bytes.data(), wanted, &count, nullptr) == 0) {
        return std::nullopt;
    }
    return count;
}

void UciProcess::drain(PipeEnd& from, std::string& into) {
    std::array<char, PIPE_SIZE> buffer;
    while (from.isOpen()) {
        DWORD count = 0;
        if (PeekNamedPipe(handleOf(from.get()), nullptr, 0, nullptr, &count, nullptr) == 0) {
            from.close();
        } else if (count == 0) {
            return;
        } else if (ReadFile(handleOf(from.get()), buffer.data(), PIPE_SIZE, &count, nullptr) != 0) {
            into.append(buffer.data(), count);
        }
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

std::int64_t UciProcess::getResidentKib() const {
    PROCESS_MEMORY_COUNTERS memory{};
    memory.cb = sizeof memory;
    K32GetProcessMemoryInfo(handleOf(process), &memory, sizeof memory);
    return end ? 0 : static_cast<std::int64_t>(memory.WorkingSetSize / 1024);
}

void UciProcess::pump(Timeout timeout, bool wantRoom) {
    // Whether there is room is known only when something is written, so that is tried soon.
    const Clock::time_point deadline = Clock::now() + (wantRoom ? POLL_INTERVAL : timeout);
    const auto taken = [this] {
        return pending.size() + errorText.size() + (isOutputOver() ? 1 : 0);
    };
    for (const std::size_t before = taken();;) {
        drain(output, pending);
        drain(errors, errorText);
        if (taken() != before || Clock::now() >= deadline) {
            return;
        }
        sleepMilliseconds(POLL_INTERVAL.count());
    }
}
