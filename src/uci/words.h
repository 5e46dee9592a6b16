// The words of a line.
#pragma once

#include <optional>
#include <string>
#include <vector>

// The number that the whole text is, saturated at 32 bits; nothing if it is none.
std::optional<int> numberOf(const std::string& text);

std::string lowered(std::string text);

// The words from `first` to `last`, separated by blanks.
std::string joined(std::vector<std::string>::const_iterator first,
                   std::vector<std::string>::const_iterator last);
