#include "support/uciProcess.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace {

using Clock = std::chrono::steady_clock;
using Timeout = UciProcess::Timeout;

constexpr Timeout SEND_TIMEOUT{10000};
// How often a process is asked whether it has ended.
constexpr Timeout END_POLL{2};

// What is left until `deadline`, at least 0.
Timeout timeLeft(Clock::time_point deadline) {
    // Rounded up, so that a wait never ends before its time.
    const auto left = std::chrono::ceil<Timeout>(deadline - Clock::now());
    return std::max(left, Timeout(0));
}

void closeEnd(int& descriptor) {
    if (descriptor >= 0) {
        close(descriptor);
        descriptor = -1;
    }
}

// A pipe that no other child inherits.
struct Pipe {
    Pipe() {
        std::array<int, 2> ends;
        if (pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw CannotStart(std::string("no pipe: ") + std::strerror(errno));
        }
        reader = ends[0];
        writer = ends[1];
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        closeEnd(reader);
        closeEnd(writer);
    }

    int reader;
    int writer;
};

// The standard descriptors and the signals of the child.
class SpawnPlan {
public:
    SpawnPlan(int input, int output, int errors) {
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, errors, STDERR_FILENO);
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        posix_spawnattr_init(&attributes);
        posix_spawnattr_setsigmask(&attributes, &none);
        posix_spawnattr_setsigdefault(&attributes, &all);
        posix_spawnattr_setpgroup(&attributes, 0);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                  POSIX_SPAWN_SETPGROUP);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;
    ~SpawnPlan() {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }

    pid_t start(const std::string& path, std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), path);
        std::vector<char*> words;
        words.reserve(arguments.size() + 1);
        for (std::string& argument : arguments) {
            words.push_back(argument.data());
        }
        words.push_back(nullptr);
        pid_t pid = -1;
        const int fault =
            posix_spawn(&pid, path.c_str(), &actions, &attributes, words.data(), environ);
        if (fault != 0) {
            throw CannotStart("cannot start " + path + ": " + std::strerror(fault));
        }
        return pid;
    }

private:
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
};

void setNonBlocking(int descriptor) {
    fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

// Appends all that can be read now; closes the descriptor at the end of its data.
void drain(int& descriptor, std::string& into) {
    std::array<char, 65536> buffer;
    while (descriptor >= 0) {
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count > 0) {
            into.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
            closeEnd(descriptor);
        } else if (errno == EAGAIN) {
            return;
        }
    }
}

} // namespace

UciProcess::UciProcess(const std::string& path, const std::vector<std::string>& arguments) {
    std::signal(SIGPIPE, SIG_IGN);
    Pipe toEngine;
    Pipe fromEngine;
    Pipe errorsOfEngine;
    const SpawnPlan plan(toEngine.reader, fromEngine.writer, errorsOfEngine.writer);
    pid = plan.start(path, arguments);
    input = std::exchange(toEngine.writer, -1);
    output = std::exchange(fromEngine.reader, -1);
    errors = std::exchange(errorsOfEngine.reader, -1);
    for (const int descriptor : {input, output, errors}) {
        setNonBlocking(descriptor);
    }
}

UciProcess::~UciProcess() {
    sendSignal(SIGKILL);
    if (!end) {
        waitpid(pid, nullptr, 0);
    }
    closeInput();
    closeOutput();
    closeEnd(errors);
}

bool UciProcess::send(const std::string& line) {
    return sendRaw(line + '\n');
}

bool UciProcess::sendRaw(const std::string& bytes) {
    const Clock::time_point deadline = Clock::now() + SEND_TIMEOUT;
    std::size_t sent = 0;
    while (sent < bytes.size() && input >= 0) {
        const ssize_t count = write(input, bytes.data() + sent, bytes.size() - sent);
        if (count >= 0) {
            sent += static_cast<std::size_t>(count);
        } else if (errno != EAGAIN && errno != EINTR) {
            return false;
        } else if (!pump(timeLeft(deadline), true) && Clock::now() >= deadline) {
            return false;
        }
    }
    return sent == bytes.size();
}

void UciProcess::closeInput() {
    closeEnd(input);
}

void UciProcess::closeOutput() {
    closeEnd(output);
}

std::optional<std::string> UciProcess::readLine(Timeout timeout) {
    const Clock::time_point deadline = Clock::now() + timeout;
    for (;;) {
        std::optional<std::string> line = takeLine();
        if (line || isOutputOver()) {
            return line;
        }
        const bool isLate = Clock::now() >= deadline;
        const std::size_t before = pending.size();
        pump(timeLeft(deadline));
        if (isLate && pending.size() == before && output >= 0) {
            return std::nullopt;
        }
    }
}

void UciProcess::takeOutput() {
    drain(output, pending);
    drain(errors, errorText);
}

std::optional<std::string> UciProcess::takeLine() {
    const std::size_t length = pending.find('\n');
    if (length != std::string::npos) {
        std::string line = pending.substr(0, length);
        pending.erase(0, length + 1);
        return line;
    }
    const bool isLast = isOutputOver() && !pending.empty();
    return isLast ? std::optional(std::exchange(pending, "")) : std::nullopt;
}

std::vector<std::string> UciProcess::readUntil(const std::string& prefix, Timeout timeout) {
    const Clock::time_point deadline = Clock::now() + timeout;
    std::vector<std::string> lines;
    while (std::optional<std::string> line = readLine(timeLeft(deadline))) {
        lines.push_back(std::move(*line));
        if (lines.back().starts_with(prefix)) {
            break;
        }
    }
    return lines;
}

const std::string& UciProcess::readErrors() {
    drain(errors, errorText);
    return errorText;
}

std::optional<UciProcess::End> UciProcess::waitForEnd(Timeout timeout) {
    const Clock::time_point deadline = Clock::now() + timeout;
    while (!end) {
        const bool isLate = Clock::now() >= deadline;
        int status = 0;
        if (waitpid(pid, &status, WNOHANG) == pid) {
            const bool exited = WIFEXITED(status);
            end = End{exited, exited ? WEXITSTATUS(status) : WTERMSIG(status)};
        } else if (isLate) {
            break;
        } else {
            pump(std::min(END_POLL, timeLeft(deadline)));
        }
    }
    return end;
}

void UciProcess::sendSignal(int signal) {
    if (!end) {
        kill(pid, signal);
    }
}

std::int64_t UciProcess::getResidentKib() const {
    std::ifstream statm("/proc/" + std::to_string(pid) + "/statm");
    std::int64_t total = 0;
    std::int64_t resident = 0;
    statm >> total >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

std::int64_t UciProcess::getProcessorMillis() const {
    clockid_t clock;
    timespec used{};
    if (end || clock_getcpuclockid(pid, &clock) != 0 || clock_gettime(clock, &used) != 0) {
        return 0;
    }
    return static_cast<std::int64_t>(used.tv_sec) * 1000 + used.tv_nsec / 1000000;
}

std::map<int, std::int64_t> UciProcess::getProcessorWaits() const {
    std::map<int, std::int64_t> waits;
    std::error_code fault;
    const std::string tasks = "/proc/" + std::to_string(pid) + "/task";
    for (std::filesystem::directory_iterator task(tasks, fault), last; !fault && task != last;
         task.increment(fault)) {
        std::ifstream statistics(task->path() / "schedstat");
        std::int64_t run = 0;
        std::int64_t waited = 0;
        if (statistics >> run >> waited) {
            waits[std::stoi(task->path().filename().string())] = waited;
        }
    }
    return waits;
}

bool UciProcess::pump(Timeout timeout, bool wantRoom) {
    // A descriptor of -1 is passed over.
    std::array<pollfd, 3> waited = {pollfd{output, POLLIN, 0}, pollfd{errors, POLLIN, 0},
                                    pollfd{wantRoom ? input : -1, POLLOUT, 0}};
    if (poll(waited.data(), waited.size(), static_cast<int>(timeout.count())) <= 0) {
        return false;
    }
    takeOutput();
    return waited[2].revents != 0;
}
