// The files of page/, which the build makes a part of the program.
#pragma once

#include <string_view>

extern const std::string_view PAGE_STYLE;  // a style sheet
extern const std::string_view PAGE_SCRIPT; // what the page adds where scripts may run
extern const std::string_view PAGE_PIECES; // the drawings that boards refer to, as SVG
