#include "support/text.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>

namespace {

std::string withoutControls(std::string text) {
    const auto isControl = [](unsigned char letter) { return std::iscntrl(letter) != 0; };
    std::ranges::replace_if(text, isControl, '?');
    return text;
}

// Whether a byte of UTF-8 continues a character.
bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

} // namespace

UsageError::UsageError(const std::string& message) : std::runtime_error(withoutControls(message)) {
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
