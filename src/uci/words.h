// The words of a line.
#pragma once

#include <string>
#include <vector>

std::string lowered(std::string text);

// The words from `first` to `last`, separated by blanks.
std::string joined(std::vector<std::string>::const_iterator first,
                   std::vector<std::string>::const_iterator last);
