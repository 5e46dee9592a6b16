#include "support/settings.h"

#include "support/text.h"

#include <algorithm>
#include <limits>
#include <sstream>

namespace {

// The names of EngineConfig::print() that have a value.
std::vector<std::string> getNames(const EngineConfig& config) {
    std::stringstream stream;
    config.print(stream);
    std::vector<std::string> names;
    for (std::string line; std::getline(stream, line);) {
        if (const std::size_t end = line.find(": "); end != std::string::npos) {
            names.push_back(line.substr(0, end));
        }
    }
    return names;
}

std::string listOf(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) {
        list.append(list.empty() ? "" : ", ").append(name);
    }
    return list;
}

} // namespace

void addSettings(Program& program, std::vector<std::string>& settings) {
    program.addValues("--set", settings, "NAME=VALUE",
                      "change a setting of the engine, such as QuiscenceMaxDepth=4; may be "
                      "repeated; a wrong NAME lists all");
}

void applySettings(const std::vector<std::string>& settings, EngineConfig& config) {
    const std::vector<std::string> names = getNames(config);
    for (const std::string& setting : settings) {
        const std::size_t end = setting.find('=');
        const std::string name = setting.substr(0, end);
        if (std::ranges::find(names, name) == names.end()) {
            throw UsageError("--set takes NAME=VALUE, where NAME is one of " + listOf(names) +
                             "; not \"" + setting + '"');
        }
        const std::string value = end == std::string::npos ? "" : setting.substr(end + 1);
        const int number = parseNumber(value, name, 0, std::numeric_limits<int>::max());
        config.readLine(name + ": " + std::to_string(number));
    }
}
