// Numbers and shapes as SVG writes them.
#pragma once

#include <string>
#include <vector>

struct Point {
    double x;
    double y;
};

// A coordinate, to a hundredth.
std::string coordinate(double value);

// The value of `d` for a line through the points, and for the shape that they enclose.
std::string linePath(const std::vector<Point>& points);
std::string shapePath(const std::vector<Point>& points);
