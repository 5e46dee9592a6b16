// Parameters and statistics read from text.
#pragma once

#include <sstream>
#include <string>

// Passes the lines of a text to `reader`, one by one.
template <class Reader> void readLines(Reader& reader, const std::string& text) {
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        reader.readLine(line);
    }
}
