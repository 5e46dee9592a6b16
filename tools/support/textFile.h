// Text files that the user of a tool names.
#pragma once

#include <fstream>
#include <string>

// The file, open at its beginning. UsageError if it cannot be read; a folder cannot.
std::ifstream openText(const std::string& path);

// UsageError if `path` is no place for writeWhole(): a folder, a file that may not be
// written, or in a folder that is not there or takes no files. For work that is too long to
// be lost at its end.
void requireWritable(const std::string& path);

// Writes a file that is whole or not there: the old file stays until all of
// `text` is written, and its permissions beyond that. A device or a pipe is written as it
// is. Throws std::runtime_error, and leaves no draft, if that fails.
void writeWhole(const std::string& path, const std::string& text);
