#include "uci/words.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <limits>
#include <system_error>

std::optional<int> numberOf(const std::string& text) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc::invalid_argument || end != text.data() + text.size()) {
        return std::nullopt;
    }
    if (error == std::errc::result_out_of_range) {
        return text.front() == '-' ? std::numeric_limits<int>::min()
                                   : std::numeric_limits<int>::max();
    }
    return number;
}

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

std::string joined(std::vector<std::string>::const_iterator first,
                   std::vector<std::string>::const_iterator last) {
    std::string text;
    for (auto word = first; word != last; ++word) {
        text.append(word == first ? "" : " ").append(*word);
    }
    return text;
}
