// The command line of a program, on top of CLI11. Options with their texts, ranges and defaults
// are declared once; --help is made from them, and the man page from --help.
#pragma once

#include "base/clock.h"
#include "support/text.h"

#include <CLI/CLI.hpp>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class Program : public CLI::App {
public:
    // `usage` follows the name in the usage line; a line break in it begins another form.
    // `failure` says what the exit status 1 means.
    Program(const std::string& _name, std::string _usage, const std::string& description,
            const std::string& failure);

    // A target is a value, the default, or std::optional of one without a default.

    // A whole number from `least` to `most`. `value` is its name in the help, such as "N". The
    // text is completed by the range and, if there is one, by the default.
    template <class Target>
    CLI::Option* addNumber(const std::string& option, Target& target, int least, int most,
                           const std::string& value, const std::string& text) {
        return addValue(option, value, text + rangeText(least, most, target),
                        [=, &target](const std::string& word) {
                            target = parseNumber(word, option, least, most);
                        });
    }
    // Seconds above 0, with a fraction if wished; at least a millisecond, at most `most` seconds.
    template <class Target>
    CLI::Option* addSeconds(const std::string& option, Target& target, int most,
                            const std::string& text) {
        return addValue(
            option, "S", text + secondsText(target),
            [=, &target](const std::string& word) { target = parseSeconds(word, option, most); });
    }
    // Any text, such as the name of a file.
    template <class Target>
    CLI::Option* addText(const std::string& option, Target& target, const std::string& value,
                         const std::string& text) {
        return addValue(option, value, text, [&target](const std::string& word) { target = word; });
    }
    // One of several words. The text is completed by the default, unless that is empty.
    CLI::Option* addChoice(const std::string& option, std::string& target,
                           const std::vector<std::string>& choices, const std::string& value,
                           const std::string& text);
    // A value that `set` takes, or refuses by a UsageError.
    CLI::Option* addValue(const std::string& option, const std::string& value,
                          const std::string& text,
                          const std::function<void(const std::string&)>& set);

    // Parses the command line, calls `body` and returns its result. --help and --version return
    // 0. A UsageError, or a command line that does not fit, becomes one line on standard error and
    // status 2; any other exception one line and status 1. `body` is left by an exception at the
    // first write to standard output that fails.
    int run(int argc, const char* const* argv, const std::function<int()>& body);

private:
    static std::string rangeText(int least, int most, const std::optional<int>& preset);
    static std::string secondsText(const std::optional<Milliseconds>& preset);
    std::string makeHelp() const;

    std::string usage;
};
