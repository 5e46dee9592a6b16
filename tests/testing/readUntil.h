// Reading the lines of a program up to a certain one.
#pragma once

#include "support/uciProcess.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

// The next lines up to the first that begins with `prefix`, or all that come in time.
inline std::vector<std::string> readUntil(UciProcess& process, const std::string& prefix,
                                          UciProcess::Timeout timeout) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point deadline = Clock::now() + timeout;
    std::vector<std::string> lines;
    while (lines.empty() || !lines.back().starts_with(prefix)) {
        const auto left = std::chrono::ceil<UciProcess::Timeout>(deadline - Clock::now());
        const auto line = process.readLine(std::max(left, UciProcess::Timeout(0)));
        if (!line) {
            break;
        }
        lines.push_back(*line);
    }
    return lines;
}
