// The one log of the process. The engine that plays writes nothing: every level is off,
// and a call costs nothing. A build with the option KESTRAN_LOG passes each message to the
// sinks.
#pragma once

#include "base/logger.h"

#include <concepts>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#ifdef KESTRAN_LOG
inline constexpr bool LOG_ENABLED = true;
#else
inline constexpr bool LOG_ENABLED = false;
#endif

// Hands every message on to its sinks, if the build has the log switched on.
// Safe to call from any thread; sinks are added before the first one starts.
//
// A message is a text, a text with a number that follows it directly, or a function that
// makes the text. The function is called only if somebody listens.
class LoggerService final : public Logger {
public:
    // Registers a StandardLogger, unless there is a sink already.
    void addStandard();
    // Appends a sink, which the service owns from now on.
    void addLoggerImpl(std::unique_ptr<Logger> sink);
    std::size_t getSinkCount() const { return loggerImpls.size(); }

    void error(const std::string& message) override { pass(&Logger::error, message); }
    void warn(const std::string& message) override { pass(&Logger::warn, message); }
    void info(const std::string& message) override { pass(&Logger::info, message); }
    void debug(const std::string& message) override { pass(&Logger::debug, message); }
    void trace(const std::string& message) override { pass(&Logger::trace, message); }
    bool hasTag(const std::string& /*tag*/) override { return false; }

    template <class... Message> void error(const Message&... message) {
        pass(&Logger::error, message...);
    }
    template <class... Message> void warn(const Message&... message) {
        pass(&Logger::warn, message...);
    }
    template <class... Message> void info(const Message&... message) {
        pass(&Logger::info, message...);
    }
    template <class... Message> void debug(const Message&... message) {
        pass(&Logger::debug, message...);
    }
    template <class... Message> void trace(const Message&... message) {
        pass(&Logger::trace, message...);
    }
    // The tagged trace: no tag is traced.
    void trace(const char* /*message*/, const char* /*tag*/) {}

    // `str` followed by the decimal text of `number`, with no blank between them.
    static std::string append(const std::string& str, std::int64_t number);

private:
    // A level operation of a sink, such as &Logger::error.
    using Level = void (Logger::*)(const std::string&);

    template <class Message> void pass(Level level, const Message& message) {
        if constexpr (!LOG_ENABLED) {
            return;
        } else if constexpr (std::invocable<Message>) {
            passText(level, message());
        } else {
            passText(level, message);
        }
    }
    template <class Message> void pass(Level level, const Message& message, std::int64_t number) {
        if constexpr (LOG_ENABLED) {
            passText(level, append(message, number));
        }
    }
    void passText(Level level, const std::string& message);

    std::mutex sinkMutex; // keeps messages of different threads whole
    std::vector<std::unique_ptr<Logger>> loggerImpls;
};

// The global log. It exists before main and until the process exits.
extern LoggerService logger;
