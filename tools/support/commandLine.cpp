#include "support/commandLine.h"

#include "support/system.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <sstream>

namespace {

// A dash alone is a field of a FEN.
bool looksLikeOption(const std::string& word) {
    return word.size() > 1 && word[0] == '-' && (word[1] < '0' || word[1] > '9');
}

std::string withoutControls(std::string text) {
    const auto isControl = [](unsigned char letter) { return std::iscntrl(letter) != 0; };
    std::ranges::replace_if(text, isControl, '?');
    return text;
}

// Whether a byte of UTF-8 continues a character.
bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

std::string_view environmentOf(const char* name) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr ? value : "";
}

bool isTerminalDumb() {
    return environmentOf("TERM") == "dumb";
}

} // namespace

UsageError::UsageError(const std::string& message) : std::runtime_error(withoutControls(message)) {
}

CommandLine::CommandLine(int argc, const char* const* argv) : words(argv + 1, argv + argc) {
}

bool CommandLine::takeFlag(std::string_view name) {
    const auto count = std::erase(words, name);
    if (count > 1) {
        throw UsageError(std::string(name) + " is given twice");
    }
    return count == 1;
}

std::optional<std::string> CommandLine::takeOption(std::string_view name) {
    std::optional<std::string> value = takeFirst(name);
    if (value && takeFirst(name)) {
        throw UsageError(std::string(name) + " is given twice");
    }
    return value;
}

std::optional<std::string> CommandLine::takeFirst(std::string_view name) {
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
    const auto option = std::ranges::find_if(words, looksLikeOption);
    if (option != words.end()) {
        throw UsageError("unknown option " + *option);
    }
    return std::move(words);
}

std::vector<std::string> splitAt(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text + separator);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
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

Milliseconds parseSeconds(const std::string& text, const std::string& what, int most) {
    double seconds = 0;
    const char* end = text.data() + text.size();
    const auto [stopped, fault] =
        std::from_chars(text.data(), end, seconds, std::chars_format::fixed);
    // Negated as a whole, so that NaN is refused.
    if (!(fault == std::errc() && stopped == end && seconds > 0 && seconds <= most)) {
        throw UsageError(what + " is a number of seconds above 0, at most " + std::to_string(most) +
                         ", not \"" + text + "\"");
    }
    return std::max<Milliseconds>(std::llround(seconds * 1000), 1);
}

std::size_t countColumns(const std::string& text) {
    return text.size() - static_cast<std::size_t>(std::ranges::count_if(text, isContinuation));
}

std::string wrapText(const std::string& text, std::size_t column, std::size_t width) {
    std::string wrapped;
    std::size_t used = column;
    std::size_t lastBlank = std::string::npos; // of the present line, in `wrapped`
    for (const char letter : text) {
        if (letter == '\n') {
            wrapped += letter;
            used = 0;
            lastBlank = std::string::npos;
            continue;
        }
        if (used == 0 && column > 0) {
            wrapped.append(column, ' ');
            used = column;
        }
        if (used >= width && letter != ' ' && lastBlank != std::string::npos) {
            const std::string word = wrapped.substr(lastBlank + 1);
            wrapped.resize(lastBlank);
            wrapped.append(1, '\n').append(column, ' ').append(word);
            used = column + countColumns(word);
            lastBlank = std::string::npos;
        }
        if (letter == ' ') {
            lastBlank = wrapped.size();
        }
        wrapped += letter;
        used += isContinuation(letter) ? 0 : 1;
    }
    return wrapped;
}

std::optional<int> takeNumber(CommandLine& commandLine, const std::string& name, int least,
                              int most) {
    const std::optional<std::string> text = commandLine.takeOption(name);
    return text ? std::optional(parseNumber(*text, name, least, most)) : std::nullopt;
}

bool isColourWanted() {
    return isStandardOutputTerminal() && environmentOf("NO_COLOR").empty() && !isTerminalDumb();
}

Progress::Progress() : isShown(isStandardErrorTerminal() && !isTerminalDumb()) {
}

Progress::~Progress() {
    show("");
}

void Progress::show(const std::string& text) {
    if (isShown) {
        std::cerr << "\r\x1b[K" << text << std::flush;
    }
}
