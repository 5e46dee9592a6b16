// Reads a "key value" line of a parameter text.
#pragma once

#include <string>

// Whether `str` starts with `prefix`; an empty prefix always matches.
bool startsWith(const std::string& str, const std::string& prefix);

// Returns false and leaves `value` unchanged if `line` does not start with `key`. Otherwise reads
// the rest as a number into `value` and returns true: a word that is not a number gives 0, and an
// empty rest leaves `value` unchanged.
bool readLong(const std::string& line, const std::string& key, long& value);

// If `line` starts with `key`, stores the rest in `value` and returns true. Otherwise returns false
// and leaves `value` unchanged.
bool readString(const std::string& line, const std::string& key, std::string& value);
