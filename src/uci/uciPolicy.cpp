#include "uci/uciPolicy.h"

#include "base/loggingService.h"

#include <sstream>

int getIntOption(const std::string& name, const std::string& value) {
    int number = 0;
    std::istringstream(value) >> number;
    logger.info([&] { return "Setting option " + name + " to " + value; });
    return number;
}
