// Conversations with the second front end.

#include "fuzz/conversation.h"
#include "fuzz/fuzz.h"
#include "uci/modernPolicy.h"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>

namespace {

using Words = std::vector<std::string>;

bool hasAny(const Words& words, std::initializer_list<const char*> names) {
    return std::ranges::any_of(names, [&words](const char* name) {
        return std::ranges::find(words, name) != words.end();
    });
}

bool isEndless(const Words& words) {
    return hasAny(words, {"infinite"}) ||
           !hasAny(words, {"movetime", "wtime", "btime", "winc", "binc", "movestogo"});
}

// Without a clock a search ends by its nodes, or, if it has no limit at all, by `stop` and the end
// of input. A search limited by depth may take too long.
bool isTooLong(const Words& words) {
    const auto nodes = std::ranges::find(words, "nodes");
    const bool endsByNodes =
        words.end() - nodes >= 2 && std::strtoll(nodes[1].c_str(), nullptr, 10) <= 20000;
    return isEndless(words) && hasAny(words, {"depth", "nodes", "mate"}) && !endsByNodes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    converse({.makePolicy = [] { return std::unique_ptr<UciPolicy>(new ModernPolicy); },
              .isAnswered = [](const Words&) { return true; },
              .isEndless = isEndless,
              .isTooLong = isTooLong,
              .isOwnLine =
                  [](const std::string& line) {
                      return line.starts_with("option name ") ||
                             (line.starts_with("info depth ") &&
                              line.find(" score ") != std::string::npos);
                  }},
             textOf(data, size));
    return 0;
}
