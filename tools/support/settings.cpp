#include "support/settings.h"

#include "support/text.h"

#include <algorithm>
#include <limits>
#include <regex>
#include <sstream>

namespace {

// The names of EngineConfig::print() that have a value.
std::vector<std::string> getNames(const EngineConfig& config) {
    std::ostringstream stream;
    config.print(stream);
    const std::string text = stream.str();
    const std::regex name("(\\w+): ");
    return {std::sregex_token_iterator(text.begin(), text.end(), name, 1), {}};
}

} // namespace

void addSettings(Program& program, std::vector<std::string>& settings) {
    program
        .add_option("--set", settings,
                    "change a setting of the engine, such as QuiscenceMaxDepth=4; may be "
                    "repeated; a wrong NAME lists all")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false);
}

void applySettings(const std::vector<std::string>& settings, EngineConfig& config) {
    const std::vector<std::string> names = getNames(config);
    for (const std::string& setting : settings) {
        const std::size_t end = setting.find('=');
        const std::string name = setting.substr(0, end);
        if (std::ranges::find(names, name) == names.end()) {
            throw UsageError("--set takes NAME=VALUE, where NAME is one of " +
                             CLI::detail::join(names, ", ") + "; not \"" + setting + '"');
        }
        const std::string value = end == std::string::npos ? "" : setting.substr(end + 1);
        const int number = parseNumber(value, name, 0, std::numeric_limits<int>::max());
        config.readLine(name + ": " + std::to_string(number));
    }
}
