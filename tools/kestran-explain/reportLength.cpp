#include "kestran-explain/reportLength.h"

#include <algorithm>

namespace {

int countLines(const std::string& text) {
    return static_cast<int>(std::ranges::count(text, '\n'));
}

std::string leftOutText(int lines, const std::string& where) {
    const std::string unit = lines == 1 ? " line left out " : " lines left out ";
    return '(' + std::to_string(lines) + unit + where + ")\n";
}

// The first lines of a text.
std::string firstLines(const std::string& text, int lines) {
    std::size_t end = 0;
    for (int i = 0; i < lines; ++i) {
        end = text.find('\n', end) + 1;
    }
    return text.substr(0, end);
}

} // namespace

std::string joinShortened(const std::vector<std::string>& passes, int maxLines) {
    std::string text;
    int leftOutBefore = 0;
    for (std::size_t i = passes.size(); i-- > 0;) {
        const int lines = countLines(passes[i]);
        if (leftOutBefore > 0 || countLines(text) + lines > maxLines) {
            leftOutBefore += lines;
        } else {
            text.insert(0, passes[i]);
        }
    }
    if (text.empty() && !passes.empty()) {
        const int lines = countLines(passes.back());
        leftOutBefore -= lines;
        text = firstLines(passes.back(), maxLines) + leftOutText(lines - maxLines, "here");
    }
    return (leftOutBefore > 0 ? leftOutText(leftOutBefore, "before") : "") + text;
}
