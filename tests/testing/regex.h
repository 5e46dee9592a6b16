// Regular expressions (ECMAScript) for tests.
#pragma once

#include <optional>
#include <regex>
#include <string>
#include <vector>

class TextPattern {
public:
    // What matched: first all of it, then each group, empty if it has no part in it.
    using Parts = std::vector<std::string>;

    TextPattern(const std::string& pattern) // NOLINT(google-explicit-constructor)
        : regex(pattern) {}
    TextPattern(const char* pattern) : regex(pattern) {} // NOLINT(google-explicit-constructor)

    // Of the whole text.
    bool matches(const std::string& text) const { return std::regex_match(text, regex); }
    std::optional<Parts> match(const std::string& text) const {
        std::smatch match;
        return std::regex_match(text, match, regex) ? std::optional(partsOf(match)) : std::nullopt;
    }

    // Of parts of the text, from left to right.
    bool isIn(const std::string& text) const { return std::regex_search(text, regex); }
    std::vector<Parts> findAll(const std::string& text) const {
        std::vector<Parts> found;
        for (std::sregex_iterator next(text.begin(), text.end(), regex), last; next != last;
             ++next) {
            found.push_back(partsOf(*next));
        }
        return found;
    }

private:
    static Parts partsOf(const std::smatch& match) { return {match.begin(), match.end()}; }

    std::regex regex;
};
