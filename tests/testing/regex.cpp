#include "testing/regex.h"

namespace {

TextPattern::Parts partsOf(const std::smatch& match) {
    return {match.begin(), match.end()};
}

} // namespace

TextPattern::TextPattern(const std::string& pattern) : regex(pattern) {
}

TextPattern::TextPattern(const char* pattern) : regex(pattern) {
}

bool TextPattern::matches(const std::string& text) const {
    return std::regex_match(text, regex);
}

std::optional<TextPattern::Parts> TextPattern::match(const std::string& text) const {
    std::smatch match;
    return std::regex_match(text, match, regex) ? std::optional(partsOf(match)) : std::nullopt;
}

bool TextPattern::isIn(const std::string& text) const {
    return std::regex_search(text, regex);
}

std::vector<TextPattern::Parts> TextPattern::findAll(const std::string& text) const {
    std::vector<Parts> found;
    for (std::sregex_iterator next(text.begin(), text.end(), regex), last; next != last; ++next) {
        found.push_back(partsOf(*next));
    }
    return found;
}
