// The interface for receiving log messages.
#pragma once

#include <string>

class Logger {
public:
    Logger() = default;
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;
    virtual ~Logger() = default;

    virtual void error(const std::string& message) = 0;
    virtual void warn(const std::string& message) = 0;
    virtual void info(const std::string& message) = 0;
    virtual void debug(const std::string& message) = 0;
    virtual void trace(const std::string& message) = 0;
    // Whether this logger takes tagged trace messages with this tag.
    virtual bool hasTag(const std::string& tag) = 0;
};
