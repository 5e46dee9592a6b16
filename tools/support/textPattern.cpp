#include "support/textPattern.h"

#include <regex>

struct TextPattern::Form {
    std::regex regex;
};

namespace {

TextPattern::Parts partsOf(const std::smatch& match) {
    return {match.begin(), match.end()};
}

} // namespace

TextPattern::TextPattern(const std::string& pattern)
    : form(std::make_shared<const Form>(Form{std::regex(pattern)})) {
}

TextPattern::TextPattern(const char* pattern) : TextPattern(std::string(pattern)) {
}

std::optional<TextPattern::Parts> TextPattern::match(const std::string& text) const {
    std::smatch match;
    return std::regex_match(text, match, form->regex) ? std::optional(partsOf(match))
                                                      : std::nullopt;
}

std::vector<TextPattern::Parts> TextPattern::findAll(const std::string& text) const {
    std::vector<Parts> found;
    for (std::sregex_iterator next(text.begin(), text.end(), form->regex), last; next != last;
         ++next) {
        found.push_back(partsOf(*next));
    }
    return found;
}

std::string TextPattern::replaceAll(const std::string& text, const std::string& with) const {
    return std::regex_replace(text, form->regex, with);
}
