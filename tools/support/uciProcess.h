// An engine as a chess program runs it: a child process with three pipes.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// A process or an end of a pipe: on POSIX its number or descriptor, on Windows its HANDLE.
using SystemHandle = std::intptr_t;
inline constexpr SystemHandle NO_HANDLE = -1;

// Owns an end of a pipe.
class PipeEnd {
public:
    explicit PipeEnd(SystemHandle _handle = NO_HANDLE) : handle(_handle) {}
    PipeEnd(PipeEnd&& other) noexcept : handle(std::exchange(other.handle, NO_HANDLE)) {}
    PipeEnd& operator=(PipeEnd&& other) noexcept {
        std::swap(handle, other.handle);
        return *this;
    }
    ~PipeEnd() { close(); }

    void close();
    bool isOpen() const { return handle != NO_HANDLE; }
    SystemHandle get() const { return handle; }

private:
    SystemHandle handle;
};

using Pipe = std::pair<PipeEnd, PipeEnd>; // where it is read and where it is written

// The first object makes this process ignore SIGPIPE for good, as send() reports that the engine
// has gone, and raises its limit of open files, as each object needs three. The engine itself
// starts with every signal at its default and none blocked, in a process group of its own, so that
// a Ctrl-C in the terminal does not reach it. On Windows it starts without a window.
class UciProcess {
public:
    using Timeout = std::chrono::milliseconds;

    // How a process has ended.
    struct End {
        bool exited; // by itself, with `status`; otherwise killed by signal `status`
        int status;
    };

    // Starts `path` with `arguments`, which hold no quotes on Windows. Throws UsageError, which
    // names the program and says why, if that fails.
    explicit UciProcess(const std::string& path, std::vector<std::string> arguments = {});
    UciProcess(const UciProcess&) = delete;
    UciProcess& operator=(const UciProcess&) = delete;
    // Kills the process if it still runs, and waits for it.
    ~UciProcess() { kill(); }

    // Writes a line, or raw bytes, to the engine; what it writes meanwhile is kept, so
    // that neither waits for the other. False if it no longer reads, or has not for ten
    // seconds.
    bool send(const std::string& line) { return sendRaw(line + '\n'); }
    bool sendRaw(const std::string& bytes);
    // The end of the engine's input.
    void closeInput() { input.close(); }
    // The reader of the engine's output goes away.
    void closeOutput() { output.close(); }

    // The next line of standard output without its line end, or nothing if none comes
    // in time or the output has ended. Text after the last line end counts as a line
    // once the output has ended.
    std::optional<std::string> readLine(Timeout timeout);
    // No more output can come.
    bool isOutputOver() const { return !output.isOpen(); }
    // All that the engine has written to standard error since it was started.
    const std::string& readErrors();

    // How the process ends, or nothing if it does not in time.
    std::optional<End> waitForEnd(Timeout timeout);
    // On POSIX.
    int getPid() const { return static_cast<int>(process); }
    // Memory in use, in KiB; 0 for a process that has ended.
    std::int64_t getResidentKib() const;

private:
    // The next line of what has been taken, as readLine() makes lines of it.
    std::optional<std::string> takeLine();

    // ---- What each system does in its own way ----

    // A pipe that no child inherits.
    static Pipe makePipe();
    // Starts a process with these ends of the pipes as its standard streams. No other child
    // inherits them. Our ends no longer block.
    void start(std::vector<std::string>& words, const std::array<SystemHandle, 3>& streams);
    // Writes what there is room for; nothing if the engine reads no more.
    std::optional<std::size_t> writeSome(std::string_view bytes);
    // Waits until there is output to take, or perhaps room to write if that is wanted; keeps all
    // output that is there.
    void pump(Timeout timeout, bool wantRoom = false);
    // Appends all that can be read now; closes the pipe at the end of its data.
    static void drain(PipeEnd& from, std::string& into);
    // How the process has ended, if it has.
    std::optional<End> askForEnd() const;
    // Ends the process if it runs, and waits for it.
    void kill();

    SystemHandle process = NO_HANDLE;
    PipeEnd input;  // written by us
    PipeEnd output; // read by us, as is the next one
    PipeEnd errors;
    std::string pending; // bytes of output that no line has been made of yet
    std::string errorText;
    std::optional<End> end;
};
