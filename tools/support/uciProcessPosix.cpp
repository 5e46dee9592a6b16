#include "support/uciProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace {

// Standard descriptors and signals as POSIX has them: the handle of a process is its number, that
// of an end of a pipe its descriptor.

int descriptorOf(SystemHandle end) {
    return static_cast<int>(end);
}

pid_t pidOf(SystemHandle process) {
    return static_cast<pid_t>(process);
}

void closeDescriptor(int descriptor) {
    if (descriptor >= 0) {
        close(descriptor);
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
        closeDescriptor(reader);
        closeDescriptor(writer);
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

} // namespace

UciProcess::UciProcess(const std::string& path, const std::vector<std::string>& arguments) {
    std::signal(SIGPIPE, SIG_IGN);
    Pipe toEngine;
    Pipe fromEngine;
    Pipe errorsOfEngine;
    const SpawnPlan plan(toEngine.reader, fromEngine.writer, errorsOfEngine.writer);
    process = plan.start(path, arguments);
    input = std::exchange(toEngine.writer, -1);
    output = std::exchange(fromEngine.reader, -1);
    errors = std::exchange(errorsOfEngine.reader, -1);
    for (const SystemHandle handle : {input, output, errors}) {
        setNonBlocking(descriptorOf(handle));
    }
}

void UciProcess::kill() {
    if (!end) {
        ::kill(pidOf(process), SIGKILL);
        waitpid(pidOf(process), nullptr, 0);
    }
}

std::optional<std::size_t> UciProcess::writeSome(std::string_view bytes) {
    const ssize_t count = write(descriptorOf(input), bytes.data(), bytes.size());
    if (count < 0 && errno != EAGAIN && errno != EINTR) {
        return std::nullopt;
    }
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}

void UciProcess::drain(SystemHandle& from, std::string& into) {
    std::array<char, 65536> buffer;
    while (from != NO_HANDLE) {
        const ssize_t count = read(descriptorOf(from), buffer.data(), buffer.size());
        if (count > 0) {
            into.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
            closeEnd(from);
        } else if (errno == EAGAIN) {
            return;
        }
    }
}

void UciProcess::closeEnd(SystemHandle& end) {
    closeDescriptor(descriptorOf(std::exchange(end, NO_HANDLE)));
}

std::optional<UciProcess::End> UciProcess::askForEnd() const {
    int status = 0;
    if (waitpid(pidOf(process), &status, WNOHANG) != pidOf(process)) {
        return std::nullopt;
    }
    const bool exited = WIFEXITED(status);
    return End{exited, exited ? WEXITSTATUS(status) : WTERMSIG(status)};
}

int UciProcess::getPid() const {
    return pidOf(process);
}

void UciProcess::sendSignal(int signal) {
    if (!end) {
        ::kill(pidOf(process), signal);
    }
}

std::int64_t UciProcess::getResidentKib() const {
    std::ifstream statm("/proc/" + std::to_string(getPid()) + "/statm");
    std::int64_t total = 0;
    std::int64_t resident = 0;
    statm >> total >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

std::int64_t UciProcess::getProcessorMillis() const {
    clockid_t clock;
    timespec used{};
    if (end || clock_getcpuclockid(pidOf(process), &clock) != 0 ||
        clock_gettime(clock, &used) != 0) {
        return 0;
    }
    return static_cast<std::int64_t>(used.tv_sec) * 1000 + used.tv_nsec / 1000000;
}

bool UciProcess::pump(Timeout timeout, bool wantRoom) {
    // A descriptor of -1 is passed over.
    std::array<pollfd, 3> waited = {pollfd{descriptorOf(output), POLLIN, 0},
                                    pollfd{descriptorOf(errors), POLLIN, 0},
                                    pollfd{wantRoom ? descriptorOf(input) : -1, POLLOUT, 0}};
    if (poll(waited.data(), waited.size(), static_cast<int>(timeout.count())) <= 0) {
        return false;
    }
    takeOutput();
    return waited[2].revents != 0;
}
