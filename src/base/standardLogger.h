// The sink for standard error, one line per message. Standard output is reserved for the protocol.
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
    // False: it takes no tagged messages.
    bool hasTag(const std::string& tag) override;
};
