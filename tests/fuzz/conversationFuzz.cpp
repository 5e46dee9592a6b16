// Conversations with the engine.

#include "fuzz/conversation.h"
#include "fuzz/fuzz.h"
#include "uci/standardPolicy.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using Words = std::vector<std::string>;
    converse(
        {.makePolicy = [] { return std::unique_ptr<UciPolicy>(new StandardPolicy); },
         .isAnswered = [](const Words& words) { return words.size() > 1; },
         .isEndless =
             [](const Words& words) { return std::ranges::find(words, "infinite") != words.end(); },
         .isTooLong = [](const Words&) { return false; },
         .isOwnLine =
             [](const std::string& line) {
                 return line.starts_with("info pv") || line.starts_with("option name Hash ");
             }},
        textOf(data, size));
    return 0;
}
