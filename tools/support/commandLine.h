// What every tool does with its command line, and how it shows that it is at work.
#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// Bad input of a tool's user. The message is one sentence for them.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The words of a command line, which a tool takes one by one.
class CommandLine {
public:
    CommandLine(int argc, const char* const* argv);

    // Whether `name` stands among the words; takes it out.
    bool takeFlag(std::string_view name);
    // The value of `--name VALUE` or `--name=VALUE`; takes it out. UsageError if the
    // value is missing.
    std::optional<std::string> takeOption(std::string_view name);
    // The words that are left. UsageError if one of them looks like an option.
    std::vector<std::string> takeRest();

private:
    std::vector<std::string> words;
};

// The whole number that `text` is. UsageError, naming `what`, if it is none or lies
// outside `least` to `most`.
int parseNumber(const std::string& text, const std::string& what, int least, int most);

// Runs a tool: prints `help` for --help, calls `body` otherwise and returns its result.
// A UsageError becomes one line on standard error, with the tool's name, and status 2.
int runTool(const std::string& name, const std::string& help, int argc, const char* const* argv,
            const std::function<int(CommandLine&)>& body);

// A line on standard error that tells how far long work has come. Shows nothing if
// standard error is no terminal.
class Progress {
public:
    Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress(); // wipes the line

    void show(const std::string& text);

private:
    bool isTerminal;
};
