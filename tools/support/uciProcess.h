// An engine as a chess program sees it: a child process behind two pipes.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

class UciProcess {
public:
    using Timeout = std::chrono::milliseconds;

    // How a process has ended.
    struct End {
        bool exited; // by itself, with `status`; otherwise killed by signal `status`
        int status;
    };

    // Starts `path` with `arguments`. Throws std::runtime_error if that fails.
    explicit UciProcess(const std::string& path, const std::vector<std::string>& arguments = {});
    UciProcess(const UciProcess&) = delete;
    UciProcess& operator=(const UciProcess&) = delete;
    // Kills the process if it still runs, and waits for it.
    ~UciProcess();

    // Writes a line, or raw bytes, to the engine. False if it no longer reads.
    bool send(const std::string& line);
    bool sendRaw(const std::string& bytes);
    // The end of the engine's input.
    void closeInput();
    // The reader of the engine's output goes away.
    void closeOutput();

    // The next line of standard output without its line end, or nothing if none comes
    // in time or the output has ended.
    std::optional<std::string> readLine(Timeout timeout);
    // Lines up to and including the first that begins with `prefix`, or all that came
    // in time.
    std::vector<std::string> readUntil(const std::string& prefix, Timeout timeout);
    // All that the engine has written to standard error so far.
    std::string readErrors();

    // How the process ends, or nothing if it does not in time.
    std::optional<End> waitForEnd(Timeout timeout);
    void sendSignal(int signal);
    pid_t getPid() const { return pid; }
    // Memory in use, in KiB, and processor time used so far, in milliseconds.
    long getResidentKib() const;
    long getProcessorMillis() const;

private:
    pid_t pid = -1;
    int input = -1;      // written by us
    int output = -1;     // read by us
    int errors = -1;     // read by us
    std::string pending; // bytes of output that no line has been made of yet
    std::optional<End> end;
};
