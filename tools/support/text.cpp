#include "support/text.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>

namespace {

std::string onOneLine(std::string text) {
    std::ranges::replace_if(
        text, [](unsigned char byte) { return std::iscntrl(byte); }, '?');
    return text;
}

} // namespace

UsageError::UsageError(const std::string& message) : std::runtime_error(onOneLine(message)) {
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
    const auto beginsCharacter = [](unsigned char byte) { return (byte & 0xC0U) != 0x80U; };
    return static_cast<std::size_t>(std::ranges::count_if(text, beginsCharacter));
}

std::string wrapText(const std::string& text, std::size_t column, std::size_t width) {
    std::string wrapped;
    std::size_t used = column;
    for (std::size_t start = 0, end = 0; start < text.size(); start = end) {
        end = std::min(text.find_first_of(" \n", start + 1), text.size());
        std::string word = text.substr(start, end - start); // with the blank before it
        if (word[0] == ' ' && word.size() > 1 && used + countColumns(word) > width) {
            word[0] = '\n';
        }
        if (word[0] == '\n') {
            used = 0;
            wrapped += '\n';
            word.replace(0, 1, word == "\n" && text[end] != ' ' ? 0 : column, ' ');
        }
        used += countColumns(word);
        wrapped += word;
    }
    return wrapped;
}
