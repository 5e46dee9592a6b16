// Reading of one "key value" line of a parameter text.
#pragma once

#include <string>

// Whether `str` starts with `prefix`; an empty prefix always matches.
bool startsWith(const std::string& str, const std::string& prefix);

// If `line` starts with `key`: reads the rest as a number into `value` and returns true.
// A word that is no number gives 0; if nothing follows the key, `value` stays. False for
// any other line, and `value` stays.
bool readLong(const std::string& line, const std::string& key, long& value);

// If `line` starts with `key`: `value` becomes the rest and the result is true.
// Otherwise false, and `value` stays.
bool readString(const std::string& line, const std::string& key, std::string& value);
