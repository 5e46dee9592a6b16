#include "support/uciProcess.h"

#include <algorithm>
#include <mutex>

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

} // namespace

UciProcess::UciProcess(const std::string& path, std::vector<std::string> arguments) {
    // On Windows, a process that is started at the same time would inherit these pipes.
    static std::mutex starting;
    const std::lock_guard lock(starting);
    auto [itsInput, ourInput] = makePipe();
    auto [ourOutput, itsOutput] = makePipe();
    auto [ourErrors, itsErrors] = makePipe();
    input = std::move(ourInput);
    output = std::move(ourOutput);
    errors = std::move(ourErrors);
    arguments.insert(arguments.begin(), path);
    start(arguments, {itsInput.get(), itsOutput.get(), itsErrors.get()});
}

bool UciProcess::sendRaw(const std::string& bytes) {
    const Clock::time_point deadline = Clock::now() + SEND_TIMEOUT;
    for (std::string_view rest = bytes; !rest.empty();) {
        const auto count = writeSome(rest);
        if (!count || (*count == 0 && Clock::now() >= deadline)) {
            return false;
        }
        rest.remove_prefix(*count);
        if (*count == 0) {
            pump(timeLeft(deadline), true);
        }
    }
    return true;
}

std::optional<std::string> UciProcess::readLine(Timeout timeout) {
    const Clock::time_point deadline = Clock::now() + timeout;
    for (bool isLate = false;; pump(timeLeft(deadline))) {
        std::optional<std::string> line = takeLine();
        if (line || isOutputOver() || isLate) {
            return line;
        }
        isLate = Clock::now() >= deadline; // before the last look
    }
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

const std::string& UciProcess::readErrors() {
    drain(errors, errorText);
    return errorText;
}

std::optional<UciProcess::End> UciProcess::waitForEnd(Timeout timeout) {
    const Clock::time_point deadline = Clock::now() + timeout;
    for (end = end ? end : askForEnd(); !end && Clock::now() < deadline; end = askForEnd()) {
        pump(std::min(END_POLL, timeLeft(deadline)));
    }
    return end;
}
