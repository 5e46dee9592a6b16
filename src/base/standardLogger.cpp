#include "base/standardLogger.h"

#include <iostream>

namespace {

void writeLine(const char* prefix, const std::string& message) {
    std::cerr << prefix << message << std::endl;
}

} // namespace

void StandardLogger::error(const std::string& message) {
    writeLine("ERROR: ", message);
}

void StandardLogger::warn(const std::string& message) {
    writeLine("WARN: ", message);
}

void StandardLogger::info(const std::string& message) {
    writeLine("INFO: ", message);
}

void StandardLogger::debug(const std::string& message) {
    writeLine("DEBUG: ", message);
}

void StandardLogger::trace(const std::string& message) {
    writeLine("TRACE: ", message);
}

bool StandardLogger::hasTag(const std::string& /*tag*/) {
    return false;
}
