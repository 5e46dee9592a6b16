#include "base/loggingService.h"

#include "base/standardLogger.h"

LoggerService logger;

void LoggerService::addStandard() {
    if (loggerImpls.empty()) {
        addLoggerImpl(std::make_unique<StandardLogger>());
    }
}

void LoggerService::addLoggerImpl(std::unique_ptr<Logger> sink) {
    loggerImpls.push_back(std::move(sink));
}

void LoggerService::error(const std::string& message) {
    pass(&Logger::error, message);
}

void LoggerService::warn(const std::string& message) {
    pass(&Logger::warn, message);
}

void LoggerService::info(const std::string& message) {
    pass(&Logger::info, message);
}

void LoggerService::debug(const std::string& message) {
    pass(&Logger::debug, message);
}

void LoggerService::trace(const std::string& message) {
    pass(&Logger::trace, message);
}

bool LoggerService::hasTag(const std::string& /*tag*/) {
    return false;
}

void LoggerService::trace(const std::string& message, const std::string& tag) {
    if (hasTag(tag)) {
        trace(message);
    }
}

std::string LoggerService::append(const std::string& str, long number) {
    return str + std::to_string(number);
}

void LoggerService::pass(Level level, const std::string& message) {
    if constexpr (LOG_ENABLED) {
        const std::lock_guard lock(sinkMutex);
        for (const auto& sink : loggerImpls) {
            (*sink.*level)(message);
        }
    }
}
