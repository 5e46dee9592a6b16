// What every tool does with its command line, and how it shows that it is at work.
#pragma once

#include "base/clock.h"

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// Bad input of a tool's user. The message is one sentence for them, on one line: whatever
// control characters it quotes are question marks.
class UsageError : public std::runtime_error {
public:
    explicit UsageError(const std::string& message);
};

// The words of a command line, which a tool takes one by one.
class CommandLine {
public:
    CommandLine(int argc, const char* const* argv);

    // Whether `name` stands among the words; takes it out. UsageError if it stands there
    // twice.
    bool takeFlag(std::string_view name);
    // The value of `--name VALUE` or `--name=VALUE`; takes it out. UsageError if the
    // value is missing or the option is there twice.
    std::optional<std::string> takeOption(std::string_view name);
    // The words that are left. UsageError if one of them looks like an option: a dash and
    // more than a dash, but no number.
    std::vector<std::string> takeRest();

private:
    std::optional<std::string> takeFirst(std::string_view name);

    std::vector<std::string> words;
};

// The parts of `text` between its separators: one more than it has of these.
std::vector<std::string> splitAt(const std::string& text, char separator);

// The whole number that `text` is. UsageError, naming `what`, if it is none or lies
// outside `least` to `most`.
int parseNumber(const std::string& text, const std::string& what, int least, int most);

// The longest time that options take, 24 hours.
inline constexpr int MAX_SECONDS = 86400;

// The milliseconds of a time in seconds, a number above 0 and up to `most`, at least 1. UsageError,
// naming `what`, if `text` is none.
Milliseconds parseSeconds(const std::string& text, const std::string& what, int most);

// The columns that UTF-8 text takes in a terminal.
std::size_t countColumns(const std::string& text);

// `text`, which begins in the column `column`, in lines that end before the column `width`. Lines
// after the first are indented to `column`. Line breaks of the text stay.
std::string wrapText(const std::string& text, std::size_t column, std::size_t width);

// The number behind the option `name`, read as by parseNumber(), or nothing if the option
// is not there.
std::optional<int> takeNumber(CommandLine& commandLine, const std::string& name, int least,
                              int most);

// Runs a tool: prints `help` for --help and -h, calls `body` otherwise and returns its
// result. A UsageError becomes one line on standard error, with the tool's name, and
// status 2; any other exception one line and status 1. So does standard output that
// cannot be written: `body` is left by an exception at the first write that fails.
int runTool(const std::string& name, const std::string& help, int argc, const char* const* argv,
            const std::function<int(CommandLine&)>& body);

// Whether standard output takes colours: a terminal that is not "dumb", of a user who has
// not set NO_COLOR.
bool isColourWanted();

// A line on standard error that shows how far long work has come. Shows nothing if
// standard error is no terminal, or a "dumb" one.
class Progress {
public:
    Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress(); // wipes the line

    void show(const std::string& text);

private:
    bool isShown;
};
