// The record of a watched line as a page for a browser.
#pragma once

#include "explain/watchedLine.h"

#include <optional>
#include <string>

// What the page shows beside the line itself.
struct PageOptions {
    std::string answer;      // the sentence that answers
    std::string book;        // what the book would have done, or empty
    bool all;                // every move that was tried
    std::optional<int> pass; // the only one in the tree, or nothing for all of them
};

// A whole page that asks for nothing from outside, with the styles and the script in it.
std::string makePage(const WatchedLine& line, const PageOptions& options);
