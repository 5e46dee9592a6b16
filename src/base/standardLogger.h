// The sink that a person reads: one line a message on the standard error stream,
// so that standard output stays free for the protocol.
#pragma once

#include "base/logger.h"

#include <string>

class StandardLogger final : public Logger {
public:
    void error(const std::string& message) override;
    void warn(const std::string& message) override;
    void info(const std::string& message) override;
    void debug(const std::string& message) override;
    void trace(const std::string& message) override;
    // Always false.
    bool hasTag(const std::string& tag) override;
};
