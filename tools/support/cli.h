// The command line of a program. Options with their texts, ranges and defaults are declared once;
// --help is made from them, and the man page from --help. Only cli.cpp sees CLI11, which takes
// seconds to compile.
#pragma once

#include "base/clock.h"
#include "support/text.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

class Program {
public:
    // `usage` follows the name in the usage line; a line break in it begins another form.
    // `failure` says what the exit status 1 means.
    Program(const std::string& name, std::string _usage, const std::string& description,
            const std::string& failure);

    // A target is a value, the default, or std::optional of one without a default.

    // A whole number from `least` to `most`. `value` is its name in the help, such as "N". The
    // text is completed by the range and, if there is one, by the default.
    template <class Target>
    void addNumber(const std::string& option, Target& target, int least, int most,
                   const std::string& value, const std::string& text) {
        addValue(option, value, text + rangeText(least, most, target),
                 [=, &target](const std::string& word) {
                     target = parseNumber(word, option, least, most);
                 });
    }
    // Seconds above 0, possibly with a fraction; at least a millisecond, at most `most` seconds.
    template <class Target>
    void addSeconds(const std::string& option, Target& target, int most, const std::string& text) {
        addValue(option, "S", text + secondsText(target), [=, &target](const std::string& word) {
            target = parseSeconds(word, option, most);
        });
    }
    // Any text, such as the name of a file.
    template <class Target>
    void addText(const std::string& option, Target& target, const std::string& value,
                 const std::string& text) {
        addValue(option, value, text, [&target](const std::string& word) { target = word; });
    }
    // One of several words. The text is completed by the default, unless that is empty.
    void addChoice(const std::string& option, std::string& target,
                   const std::vector<std::string>& choices, const std::string& value,
                   const std::string& text);
    // Words that are no options.
    void addWords(const std::string& value, std::vector<std::string>& words,
                  const std::string& text);
    // True if it is given.
    void addFlag(const std::string& option, bool& target, const std::string& text);
    // Several values, each after the name of the option.
    void addValues(const std::string& option, std::vector<std::string>& target,
                   const std::string& value, const std::string& text);
    // A value that `set` takes, or refuses by a UsageError.
    void addValue(const std::string& option, const std::string& value, const std::string& text,
                  const std::function<void(const std::string&)>& set);

    // Of options declared before: `option` must be given, needs `other`, excludes each of `others`.
    void require(const std::string& option);
    void needs(const std::string& option, const std::string& other);
    void excludes(const std::string& option, const std::vector<std::string>& others);

    // Parses the command line, calls `body` and returns its result. --help and --version return
    // 0. A UsageError, or a command line that does not fit, becomes one line on standard error and
    // status 2; any other exception one line and status 1. `body` is left by an exception at the
    // first write to standard output that fails.
    int run(int argc, const char* const* argv, const std::function<int()>& body);

private:
    static std::string rangeText(int least, int most, const std::optional<int>& preset);
    static std::string secondsText(const std::optional<Milliseconds>& preset);
    std::string makeHelp() const;

    std::shared_ptr<CLI::App> line;
    std::string usage;
};
