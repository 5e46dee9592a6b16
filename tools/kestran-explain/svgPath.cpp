#include "kestran-explain/svgPath.h"

#include <array>
#include <cstdio>

std::string coordinate(double value) {
    std::array<char, 32> buffer;
    std::snprintf(buffer.data(), buffer.size(), "%.2f", value);
    std::string text = buffer.data();
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) {
        text.pop_back();
    }
    return text;
}

std::string linePath(const std::vector<Point>& points) {
    std::string path;
    for (const Point& point : points) {
        path += path.empty() ? 'M' : 'L';
        path += coordinate(point.x);
        path += ' ';
        path += coordinate(point.y);
    }
    return path;
}

std::string shapePath(const std::vector<Point>& points) {
    return linePath(points) + 'z';
}
