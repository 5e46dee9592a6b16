// Patterns of text, ECMAScript's regular expressions. The standard library's take a compiler
// seconds in each file that uses them; behind this header stands the only one.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

class TextPattern {
public:
    // What matched: first all of it, then each group, empty if it has no part in it.
    using Parts = std::vector<std::string>;

    // Throws std::regex_error for a pattern that is none.
    TextPattern(const std::string& pattern); // NOLINT(google-explicit-constructor)
    TextPattern(const char* pattern);        // NOLINT(google-explicit-constructor)

    // Of the whole text.
    bool matches(const std::string& text) const { return match(text).has_value(); }
    std::optional<Parts> match(const std::string& text) const;

    // Of parts of the text, from left to right, none of which overlap.
    bool isIn(const std::string& text) const { return !findAll(text).empty(); }
    std::vector<Parts> findAll(const std::string& text) const;
    std::string replaceAll(const std::string& text, const std::string& with) const;

private:
    struct Form;
    std::shared_ptr<const Form> form;
};
