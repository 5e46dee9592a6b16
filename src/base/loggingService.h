// The one log of the process. The engine that plays writes nothing: every level
// is off. A build with the option KESTRAN_LOG passes each message to the sinks.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#ifdef KESTRAN_LOG
inline constexpr bool LOG_ENABLED = true;
#else
inline constexpr bool LOG_ENABLED = false;
#endif

// A receiver of log messages, at five levels.
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
    // Whether messages with this tag are wanted.
    virtual bool hasTag(const std::string& tag) = 0;
};

// Hands every message on to its sinks, if the build has the log switched on.
// Safe to call from any thread; sinks are added before the first one starts.
class LoggerService final : public Logger {
public:
    // Registers a StandardLogger, unless there is a sink already.
    void addStandard();
    // Appends a sink, which the service owns from now on.
    void addLoggerImpl(std::unique_ptr<Logger> sink);
    std::size_t getSinkCount() const { return loggerImpls.size(); }

    void error(const std::string& message) override;
    void warn(const std::string& message) override;
    void info(const std::string& message) override;
    void debug(const std::string& message) override;
    void trace(const std::string& message) override;
    bool hasTag(const std::string& tag) override;

    // The same levels with a number directly behind the text.
    void error(const std::string& message, long number) { error(append(message, number)); }
    void warn(const std::string& message, long number) { warn(append(message, number)); }
    void info(const std::string& message, long number) { info(append(message, number)); }
    void debug(const std::string& message, long number) { debug(append(message, number)); }
    void trace(const std::string& message, long number) { trace(append(message, number)); }
    // The tagged trace: no tag is traced.
    void trace(const std::string& message, const std::string& tag);

    // `str` with the decimal text of `number` behind it, no blank between them.
    static std::string append(const std::string& str, long number);

private:
    // A level operation of a sink, such as &Logger::error.
    using Level = void (Logger::*)(const std::string&);
    void pass(Level level, const std::string& message);

    std::mutex sinkMutex; // keeps messages of different threads whole
    std::vector<std::unique_ptr<Logger>> loggerImpls;
};

// The global log. It exists before main and until the process exits.
extern LoggerService logger;
