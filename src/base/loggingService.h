// The log of the process. In the shipped engine every level is off and a call costs nothing. A
// build with KESTRAN_LOG passes each message to the sinks.
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

// Passes each message to its sinks if LOG_ENABLED. Safe to call from any thread, except that
// sinks must be added before the first thread starts.
//
// A message is a text, a text and a number that is appended to it, or a function that returns the
// text and is called only if LOG_ENABLED.
class LoggerService final : public Logger {
public:
    // Adds a StandardLogger unless there is a sink already.
    void addStandard();
    // Adds a sink and takes ownership of it.
    void addLoggerImpl(std::unique_ptr<Logger> sink);

    void error(const std::string& message) override { pass(&Logger::error, message); }
    void warn(const std::string& message) override { pass(&Logger::warn, message); }
    void info(const std::string& message) override { pass(&Logger::info, message); }
    void debug(const std::string& message) override { pass(&Logger::debug, message); }
    void trace(const std::string& message) override { pass(&Logger::trace, message); }
    // Whether a sink takes messages with this tag.
    bool hasTag(const std::string& tag) override;

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
    // Passes a trace message to the sinks that take its tag.
    template <std::convertible_to<std::string> Message, std::convertible_to<std::string> Tag>
    void trace(const Message& message, const Tag& tag) {
        if constexpr (LOG_ENABLED) {
            passTagged(message, tag);
        }
    }

    // `str` followed by the decimal text of `number`, without a blank.
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
    void passTagged(const std::string& message, const std::string& tag);

    std::mutex sinkMutex; // guards calls of the sinks
    std::vector<std::unique_ptr<Logger>> loggerImpls;
};

// The global log. Usable from before main() until the process exits.
extern LoggerService logger;
