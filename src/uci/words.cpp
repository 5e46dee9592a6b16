#include "uci/words.h"

#include <algorithm>
#include <cctype>

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
