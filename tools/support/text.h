// Numbers and words in text that users write, and text in lines of a terminal.
#pragma once

#include "base/clock.h"

#include <stdexcept>
#include <string>
#include <vector>

// Bad input of a tool's user. The message is one sentence for them, on one line: control
// characters in it become question marks.
class UsageError : public std::runtime_error {
public:
    explicit UsageError(const std::string& message);
};

// The whole number that `text` is. UsageError, naming `what`, if it is none or lies outside `least`
// to `most`.
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
