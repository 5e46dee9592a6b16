// A report kept short.
#pragma once

#include <string>
#include <vector>

// The texts of the passes, each of whole lines, in at most `maxLines` lines. The first passes
// give way as a whole, the last one loses its end; a line of its own says what was left out.
std::string joinShortened(const std::vector<std::string>& passes, int maxLines);
