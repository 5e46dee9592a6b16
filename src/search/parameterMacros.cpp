#include "search/parameterMacros.h"

#include <sstream>

bool startsWith(const std::string& str, const std::string& prefix) {
    return str.starts_with(prefix);
}

bool readLong(const std::string& line, const std::string& key, long& value) {
    std::string rest;
    if (!readString(line, key, rest)) {
        return false;
    }
    // Stores 0 for a word that is not a number, and nothing if there is no word.
    std::istringstream(rest) >> value;
    return true;
}

bool readString(const std::string& line, const std::string& key, std::string& value) {
    if (!startsWith(line, key)) {
        return false;
    }
    value = line.substr(key.size());
    return true;
}
