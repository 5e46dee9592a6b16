// A front end that runs inside the test.
#pragma once

#include "testing/printed.h"
#include "uci/uciEngine.h"

#include <iostream>
#include <sstream>
#include <string>

// The output of an engine for some lines of input. The end of input ends the searches.
inline std::string outputOf(UciEngine& uciEngine, const std::string& lines) {
    std::istringstream input(lines);
    std::streambuf* const before = std::cin.rdbuf(input.rdbuf());
    std::cin.clear();
    const std::string output = printed([&] { uciEngine.start(); });
    std::cin.rdbuf(before);
    return output;
}
