#include "support/cli.h"

#include "base/process.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <exception>
#include <iostream>
#include <limits>
#include <utility>

namespace {

constexpr std::size_t HELP_WIDTH = 76;      // columns; man pages escape some of the text
constexpr std::size_t MAX_NAME_COLUMN = 20; // a longer name has a line of its own

std::string nameOf(const CLI::Option& option) {
    const std::string name = CLI::detail::find_and_replace(option.get_name(false, true), ",", ", ");
    const bool hasValue = !option.get_positional() && option.get_items_expected_max() > 0;
    return hasValue ? name + ' ' + option.get_type_name() : name;
}

std::string optionHelp(const CLI::Option& option, std::size_t column) {
    const std::string name = "  " + nameOf(option);
    const bool isShort = name.size() + 2 <= column;
    return name +
           (isShort ? std::string(column - name.size(), ' ') : '\n' + std::string(column, ' ')) +
           wrapText(option.get_description(), column, HELP_WIDTH) + '\n';
}

// The text of CLI11 as a sentence of ours.
std::string describe(const CLI::ParseError& error) {
    std::string text = error.what();
    if (error.get_name() == "ArgumentMismatch") { // begins with the option
        return text.substr(0, text.find(':')) + " takes exactly one value";
    }
    if (text.size() > 1 && std::islower(static_cast<unsigned char>(text[1])) != 0) {
        text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
    }
    return text;
}

} // namespace

Program::Program(const std::string& name, std::string _usage, const std::string& description,
                 const std::string& failure)
    : line(std::make_shared<CLI::App>(description, name)), usage(std::move(_usage)) {
    line->footer("Exit status:\n  0  success\n  1  " + wrapText(failure, 5, HELP_WIDTH) +
                 "\n  2  bad input");
    line->formatter_fn(
        [this](const CLI::App*, const std::string&, CLI::AppFormatMode) { return makeHelp(); });
    line->set_help_flag("-h,--help", "print this help");
    line->set_version_flag("--version", name + " (Kestran) " KESTRAN_VERSION, "print the version");
}

std::string Program::rangeText(int least, int most, const std::optional<int>& preset) {
    const bool isOpen = most == std::numeric_limits<int>::max();
    return " (" + std::to_string(least) + (isOpen ? " or more" : " to " + std::to_string(most)) +
           (preset ? "; default " + std::to_string(*preset) : "") + ')';
}

std::string Program::secondsText(const std::optional<Milliseconds>& preset) {
    const double seconds = static_cast<double>(preset.value_or(0)) / 1000;
    return preset ? " (default " + CLI::detail::to_string(seconds) + ')' : "";
}

void Program::addChoice(const std::string& option, std::string& target,
                        const std::vector<std::string>& choices, const std::string& value,
                        const std::string& text) {
    addValue(option, value, target.empty() ? text : text + " (default " + target + ')',
             [=, &target](const std::string& word) {
                 if (std::ranges::find(choices, word) == choices.end()) {
                     throw UsageError(option + " is one of " + CLI::detail::join(choices, ", ") +
                                      ", not \"" + word + "\"");
                 }
                 target = word;
             });
}

void Program::addWords(const std::string& value, std::vector<std::string>& words,
                       const std::string& text) {
    line->add_option(value, words, text);
}

void Program::addFlag(const std::string& option, bool& target, const std::string& text) {
    line->add_flag(option, target, text);
}

void Program::addValues(const std::string& option, std::vector<std::string>& target,
                        const std::string& value, const std::string& text) {
    line->add_option(option, target, text)->type_name(value)->allow_extra_args(false);
}

void Program::addValue(const std::string& option, const std::string& value, const std::string& text,
                       const std::function<void(const std::string&)>& set) {
    line->add_option_function<std::string>(option, set, text)->type_name(value);
}

void Program::require(const std::string& option) {
    line->get_option(option)->required();
}

void Program::needs(const std::string& option, const std::string& other) {
    line->get_option(option)->needs(line->get_option(other));
}

void Program::excludes(const std::string& option, const std::vector<std::string>& others) {
    for (const std::string& other : others) {
        line->get_option(option)->excludes(line->get_option(other));
    }
}

std::string Program::makeHelp() const {
    std::size_t column = 0;
    std::vector<const CLI::Option*> options = std::as_const(*line).get_options();
    // --help and --version to the end.
    std::rotate(options.begin(), options.begin() + 2, options.end());
    for (const CLI::Option* option : options) {
        const std::size_t width = nameOf(*option).size() + 4;
        column = width <= MAX_NAME_COLUMN ? std::max(column, width) : column;
    }
    std::string words;
    std::string others;
    for (const CLI::Option* option : options) {
        (option->get_positional() ? words : others) += optionHelp(*option, column);
    }
    const std::string orAgain = "\n  or:  " + line->get_name() + ' ';
    return "Usage: " + line->get_name() + ' ' +
           CLI::detail::find_and_replace(usage, "\n", orAgain) + "\n\n" +
           wrapText(line->get_description(), 0, HELP_WIDTH) + "\n\n" +
           (words.empty() ? "" : "Arguments:\n" + words + '\n') + "Options:\n" + others + '\n' +
           line->get_footer() + '\n';
}

int Program::run(int argc, const char* const* argv, const std::function<int()>& body) {
    const auto fail = [&](const std::string& message, int status) {
        std::cout.exceptions(std::ios::goodbit); // std::cerr flushes it
        std::cout.clear();
        std::cerr << line->get_name() << ": " << message << '\n';
        return status;
    };
    prepareMemory();
    int status = 0;
    std::string hint = " (try --help)";
    std::cout.exceptions(std::ios::badbit);
    try {
        try {
            line->parse(argc, argv);
            hint = "";
            status = body();
        } catch (const CLI::Success& request) { // for the help or the version
            line->exit(request);
        }
        std::cout.flush();
    } catch (const CLI::ParseError& error) {
        status = fail(UsageError(describe(error)).what() + hint, 2);
    } catch (const UsageError& error) {
        status = fail(error.what() + hint, 2);
    } catch (const std::ios_base::failure&) {
        status = fail("standard output cannot be written", 1);
    } catch (const std::exception& error) {
        status = fail(error.what(), 1);
    }
    std::cout.exceptions(std::ios::goodbit);
    return status;
}
