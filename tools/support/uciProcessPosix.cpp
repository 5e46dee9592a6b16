#include "support/uciProcess.h"

#include "support/text.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

int descriptorOf(const PipeEnd& end) {
    return static_cast<int>(end.get());
}

} // namespace

void PipeEnd::close() {
    if (isOpen()) {
        ::close(static_cast<int>(std::exchange(handle, NO_HANDLE)));
    }
}

Pipe UciProcess::makePipe() {
    std::array<int, 2> ends;
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw UsageError(std::string("no pipe: ") + std::strerror(errno));
    }
    return {PipeEnd(ends[0]), PipeEnd(ends[1])};
}

void UciProcess::start(std::vector<std::string>& words,
                       const std::array<SystemHandle, 3>& streams) {
    std::signal(SIGPIPE, SIG_IGN);
    rlimit files{};
    getrlimit(RLIMIT_NOFILE, &files);
    files.rlim_cur = files.rlim_max;
    setrlimit(RLIMIT_NOFILE, &files);
    std::vector<char*> line(words.size() + 1, nullptr);
    std::ranges::transform(words, line.begin(), [](std::string& word) { return word.data(); });
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (int number = 0; const SystemHandle stream : streams) {
        posix_spawn_file_actions_adddup2(&actions, static_cast<int>(stream), number++);
    }
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                              POSIX_SPAWN_SETPGROUP);
    pid_t pid = -1;
    const int fault = posix_spawn(&pid, line[0], &actions, &attributes, line.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    if (fault != 0) {
        throw UsageError("cannot start " + words[0] + ": " + std::strerror(fault));
    }
    process = pid;
    for (const PipeEnd* ours : {&input, &output, &errors}) {
        fcntl(descriptorOf(*ours), F_SETFL, O_NONBLOCK);
    }
}

void UciProcess::kill() {
    if (!end) {
        ::kill(getPid(), SIGKILL);
        waitpid(getPid(), nullptr, 0);
    }
}

std::optional<std::size_t> UciProcess::writeSome(std::string_view bytes) {
    const ssize_t count = write(descriptorOf(input), bytes.data(), bytes.size());
    if (count < 0 && errno != EAGAIN && errno != EINTR) {
        return std::nullopt;
    }
    return count < 0 ? 0 : static_cast<std::size_t>(count);
}

void UciProcess::drain(PipeEnd& from, std::string& into) {
    std::array<char, 65536> buffer;
    while (from.isOpen()) {
        const ssize_t count = read(descriptorOf(from), buffer.data(), buffer.size());
        if (count > 0) {
            into.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
            from.close();
        } else if (errno == EAGAIN) {
            return;
        }
    }
}

std::optional<UciProcess::End> UciProcess::askForEnd() const {
    int status = 0;
    if (waitpid(getPid(), &status, WNOHANG) != getPid()) {
        return std::nullopt;
    }
    const bool exited = WIFEXITED(status);
    return End{exited, exited ? WEXITSTATUS(status) : WTERMSIG(status)};
}

std::int64_t UciProcess::getResidentKib() const {
    std::ifstream statm("/proc/" + std::to_string(getPid()) + "/statm");
    std::int64_t total = 0;
    std::int64_t resident = 0;
    statm >> total >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

void UciProcess::pump(Timeout timeout, bool wantRoom) {
    // A descriptor of -1 is passed over.
    std::array<pollfd, 3> waited = {pollfd{descriptorOf(output), POLLIN, 0},
                                    pollfd{descriptorOf(errors), POLLIN, 0},
                                    pollfd{wantRoom ? descriptorOf(input) : -1, POLLOUT, 0}};
    poll(waited.data(), waited.size(), static_cast<int>(timeout.count()));
    drain(output, pending);
    drain(errors, errorText);
}
