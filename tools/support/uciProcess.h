// An engine as a chess program sees it: a child process behind three pipes.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/types.h>
#include <vector>

// A program that cannot be started. The message names it and tells why.
class CannotStart : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// While such an object lives, and ever after, this process ignores SIGPIPE: an engine
// that has gone is told by the result of send(). The engine itself starts with every
// signal at its default and none blocked, in a process group of its own: a Ctrl-C in the
// terminal does not reach it.
class UciProcess {
public:
    using Timeout = std::chrono::milliseconds;

    // How a process has ended.
    struct End {
        bool exited; // by itself, with `status`; otherwise killed by signal `status`
        int status;
    };

    // Starts `path` with `arguments`. Throws CannotStart if that fails.
    explicit UciProcess(const std::string& path, const std::vector<std::string>& arguments = {});
    UciProcess(const UciProcess&) = delete;
    UciProcess& operator=(const UciProcess&) = delete;
    // Kills the process if it still runs, and waits for it.
    ~UciProcess();

    // Writes a line, or raw bytes, to the engine; what it writes meanwhile is kept, so
    // that neither waits for the other. False if it no longer reads, or has not for ten
    // seconds.
    bool send(const std::string& line);
    bool sendRaw(const std::string& bytes);
    // The end of the engine's input.
    void closeInput();
    // The reader of the engine's output goes away.
    void closeOutput();

    // The next line of standard output without its line end, or nothing if none comes
    // in time or the output has ended. What stands behind the last line end counts as
    // a line once the output has ended.
    std::optional<std::string> readLine(Timeout timeout);
    // Lines up to and including the first that begins with `prefix`, or all that came
    // in time.
    std::vector<std::string> readUntil(const std::string& prefix, Timeout timeout);
    // For a caller that waits for many processes at once: takes all that can be read now,
    // without waiting.
    void takeOutput();
    // The next line of what has been taken, as readLine() makes lines of it.
    std::optional<std::string> takeLine();
    // No more output can come.
    bool isOutputOver() const { return output < 0; }
    // The descriptors to wait on: standard output and standard error, -1 for a closed one.
    std::array<int, 2> getOutputs() const { return {output, errors}; }
    // All that the engine has written to standard error since it was started.
    const std::string& readErrors();

    // How the process ends, or nothing if it does not in time.
    std::optional<End> waitForEnd(Timeout timeout);
    void sendSignal(int signal);
    pid_t getPid() const { return pid; }
    // Memory in use, in KiB, and processor time used so far, in milliseconds. 0 for a
    // process that has ended.
    std::int64_t getResidentKib() const;
    std::int64_t getProcessorMillis() const;
    // How long each thread that lives has waited for a processor so far, in nanoseconds, by
    // its number. Empty where the system does not tell.
    std::map<int, std::int64_t> getProcessorWaits() const;

private:
    // Waits until there is output to take, or room to write if that is wanted; keeps
    // all output that is there. Whether there is room to write.
    bool pump(Timeout timeout, bool wantRoom = false);

    pid_t pid = -1;
    int input = -1;      // written by us; -1 when closed, as the next two
    int output = -1;     // read by us
    int errors = -1;     // read by us
    std::string pending; // bytes of output that no line has been made of yet
    std::string errorText;
    std::optional<End> end;
};
