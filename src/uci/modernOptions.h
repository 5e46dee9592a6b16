// The options of the modern front end.
#pragma once

#include "base/clock.h"
#include "opening/polyglot.h"
#include "uci/levels.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

struct ModernOptions {
    static constexpr int DEFAULT_HASH = 16;     // mebibytes
    static constexpr int MAX_HASH = 4096;       // mebibytes
    static constexpr int MAX_LINES = 218;       // legal moves of a position of play, at most
    static constexpr int MAX_OVERHEAD = 5000;   // milliseconds
    static constexpr int DEFAULT_OVERHEAD = 10; // milliseconds

    // The lines that announce the options, in the form that most clients expect: the default first,
    // and no blank at the end.
    static std::vector<std::string> getLines();

    // Sets the option of a `setoption` line, if it exists. Compares names case-insensitively; a
    // name may contain blanks. A number outside the range works as the nearest inside. Reports a
    // value of the wrong type on standard error and keeps the old one. Returns the wanted size of
    // the hash table in mebibytes if that is the option.
    std::optional<int> set(const std::vector<std::string>& words);

    int lines = 1; // MultiPV
    bool limitsStrength = false;
    int rating = LEVELS.back().rating; // that the strength is limited to
    bool ponder = false;               // only announces that `go ponder` may follow
    bool ownBook = false;
    std::shared_ptr<const PolyglotBook> book; // from BookFile; null for the built-in one
    int moveOverhead = DEFAULT_OVERHEAD;      // milliseconds, never used of the own clock

private:
    void readBook(const std::string& path);
};
