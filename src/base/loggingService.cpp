#include "base/loggingService.h"

#include "base/standardLogger.h"

#include <algorithm>

LoggerService logger;

void LoggerService::addStandard() {
    if (loggerImpls.empty()) {
        addLoggerImpl(std::make_unique<StandardLogger>());
    }
}

void LoggerService::addLoggerImpl(std::unique_ptr<Logger> sink) {
    loggerImpls.push_back(std::move(sink));
}

bool LoggerService::hasTag(const std::string& tag) {
    return LOG_ENABLED && std::any_of(loggerImpls.begin(), loggerImpls.end(),
                                      [&](const auto& sink) { return sink->hasTag(tag); });
}

std::string LoggerService::append(const std::string& str, std::int64_t number) {
    return str + std::to_string(number);
}

void LoggerService::passText(Level level, const std::string& message) {
    const std::lock_guard lock(sinkMutex);
    for (const auto& sink : loggerImpls) {
        (*sink.*level)(message);
    }
}

void LoggerService::passTagged(const std::string& message, const std::string& tag) {
    const std::lock_guard lock(sinkMutex);
    for (const auto& sink : loggerImpls) {
        if (sink->hasTag(tag)) {
            sink->trace(message);
        }
    }
}
