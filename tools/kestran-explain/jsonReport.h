// The record of a watched line as JSON.
#pragma once

#include "explain/watchedLine.h"
#include "support/json.h"

#include <string>

struct JsonOptions {
    std::string answer; // in words
    bool all;           // every move tried along the line
    int firstPass;
    int endPass; // the first one that is left out again
};

Json makeJson(const WatchedLine& line, const JsonOptions& options);
