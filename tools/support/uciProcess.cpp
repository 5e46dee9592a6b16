#include "support/uciProcess.h"

#include <algorithm>

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

UciProcess::~UciProcess() {
    kill();
}

bool UciProcess::send(const std::string& line) {
    return sendRaw(line + '\n');
}

bool UciProcess::sendRaw(const std::string& bytes) {
    const Clock::time_point deadline = Clock::now() + SEND_TIMEOUT;
    std::size_t sent = 0;
    while (sent < bytes.size() && input.isOpen()) {
        const std::optional<std::size_t> count = writeSome(std::string_view(bytes).substr(sent));
        if (!count) {
            return false;
        }
        sent += *count;
        if (*count == 0 && !pump(timeLeft(deadline), true) && Clock::now() >= deadline) {
            return false;
        }
    }
    return sent == bytes.size();
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
        if (isLate && pending.size() == before && !isOutputOver()) {
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
        end = askForEnd();
        if (isLate) {
            break;
        }
        if (!end) {
            pump(std::min(END_POLL, timeLeft(deadline)));
        }
    }
    return end;
}
