// Regular expressions (ECMAScript) for tests. Only regex.cpp compiles std::regex, which is slow.
#pragma once

#include <optional>
#include <regex>
#include <string>
#include <vector>

class TextPattern {
public:
    // What matched: first all of it, then each group, empty if it has no part in it.
    using Parts = std::vector<std::string>;

    TextPattern(const std::string& pattern);
    TextPattern(const char* pattern);

    // Of the whole text.
    bool matches(const std::string& text) const;
    std::optional<Parts> match(const std::string& text) const;

    // Of parts of the text, from left to right.
    bool isIn(const std::string& text) const;
    std::vector<Parts> findAll(const std::string& text) const;

private:
    std::regex regex;
};
