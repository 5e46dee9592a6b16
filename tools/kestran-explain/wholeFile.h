// A file that is written whole or not at all.
#pragma once

#include <string>

class WholeFile {
public:
    // UsageError if no file can be written there, as far as that can be known beforehand.
    explicit WholeFile(const std::string& _path);

    // Puts `text` into the file, in place of what was there. Returns an empty text, or a
    // sentence that says why it could not be; what was there before is then still there.
    std::string write(const std::string& text) const;

private:
    std::string path; // where links lead to
};
