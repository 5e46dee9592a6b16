// A whole conversation with one of the front ends, with its threads and its searches. The clock
// runs by itself: each look at it doubles the time that has passed, so that the longest budget
// is soon over.
#pragma once

#include "uci/uciPolicy.h"

#include <memory>
#include <string>
#include <vector>

// The facts about a front end that the checks need.
struct FrontEnd {
    std::unique_ptr<UciPolicy> (*makePolicy)();
    // Of a `go` line: whether it gets an answer, and whether nothing but `stop` may end its search.
    // Of any line: whether it asks for so much that no test can wait for it.
    bool (*isAnswered)(const std::vector<std::string>& words);
    bool (*isEndless)(const std::vector<std::string>& words);
    bool (*isTooLong)(const std::vector<std::string>& words);
    // Whether a line has the form of its reports or of its options.
    bool (*isOwnLine)(const std::string& line);
};

// Called by libFuzzer's own function; ends the process if there is a fault.
void converse(const FrontEnd& frontEnd, const std::string& text);
