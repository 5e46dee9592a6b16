#include "support/commandLine.h"

#include <algorithm>
#include <charconv>
#include <iostream>
#include <unistd.h>

CommandLine::CommandLine(int argc, const char* const* argv) : words(argv + 1, argv + argc) {
}

bool CommandLine::takeFlag(std::string_view name) {
    return std::erase(words, name) > 0;
}

std::optional<std::string> CommandLine::takeOption(std::string_view name) {
    const std::string withValue = std::string(name) + "=";
    for (auto word = words.begin(); word != words.end(); ++word) {
        if (word->starts_with(withValue)) {
            const std::string value = word->substr(withValue.size());
            words.erase(word);
            return value;
        }
        if (*word == name) {
            if (word + 1 == words.end()) {
                throw UsageError(*word + " needs a value");
            }
            const std::string value = *(word + 1);
            words.erase(word, word + 2);
            return value;
        }
    }
    return std::nullopt;
}

std::vector<std::string> CommandLine::takeRest() {
    const auto option =
        std::ranges::find_if(words, [](const std::string& word) { return word.starts_with("--"); });
    if (option != words.end()) {
        throw UsageError("unknown option " + *option);
    }
    return std::move(words);
}

int parseNumber(const std::string& text, const std::string& what, int least, int most) {
    int number = 0;
    const char* end = text.data() + text.size();
    const auto [stopped, fault] = std::from_chars(text.data(), end, number);
    if (fault != std::errc() || stopped != end || number < least || number > most) {
        throw UsageError(what + " is a whole number from " + std::to_string(least) + " to " +
                         std::to_string(most) + ", not \"" + text + "\"");
    }
    return number;
}

int runTool(const std::string& name, const std::string& help, int argc, const char* const* argv,
            const std::function<int(CommandLine&)>& body) {
    CommandLine commandLine(argc, argv);
    if (commandLine.takeFlag("--help")) {
        std::cout << help;
        return 0;
    }
    try {
        return body(commandLine);
    } catch (const UsageError& error) {
        std::cerr << name << ": " << error.what() << " (--help tells more)\n";
        return 2;
    }
}

Progress::Progress() : isTerminal(isatty(STDERR_FILENO) != 0) {
}

Progress::~Progress() {
    show("");
}

void Progress::show(const std::string& text) {
    if (isTerminal) {
        std::cerr << "\r\x1b[K" << text << std::flush;
    }
}
