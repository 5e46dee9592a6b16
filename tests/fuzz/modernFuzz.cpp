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

bool isPerft(const Words& words) {
    return words.size() > 1 && words[1] == "perft";
}

bool isEndless(const Words& words) {
    return hasAny(words, {"infinite", "ponder"}) ||
           !hasAny(words, {"movetime", "wtime", "btime", "winc", "binc", "movestogo"});
}

// Without a clock a search ends by its nodes, or, if it has no limit at all, by `stop` and the end
// of input. A search limited by depth may take too long.
bool isTooLong(const Words& words) {
    if (words[0] != "go" || isPerft(words)) {
        return words[0] == "bench" || (isPerft(words) && words.size() > 2 &&
                                       std::strtoll(words[2].c_str(), nullptr, 10) > 2);
    }
    const auto nodes = std::ranges::find(words, "nodes");
    const bool endsByNodes =
        words.end() - nodes >= 2 && std::strtoll(nodes[1].c_str(), nullptr, 10) <= 20000;
    return isEndless(words) && hasAny(words, {"depth", "nodes", "mate"}) && !endsByNodes;
}

// Whether it may be a line of the commands d, eval and go perft.
bool isForPeople(const std::string& line) {
    for (const char* start : {"Fen: ", "Key: ", "Checkers:", "material ", "pawns ", "knights ",
                              "bishops ", "kings ", "bishop pair ", "advanced rooks ", "total ",
                              "Score for the side to move: ", "Nodes searched: "}) {
        if (line.starts_with(start)) {
            return true;
        }
    }
    return !line.empty() && (line.find_first_of(" #0123456789") == 0 || // diagram and pieces
                             line.find(": ") == 4 || line.find(": ") == 5);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    converse({.makePolicy = [] { return std::unique_ptr<UciPolicy>(new ModernPolicy); },
              .isAnswered = [](const Words& words) { return !isPerft(words); },
              .isEndless = isEndless,
              .isTooLong = isTooLong,
              .isOwnLine =
                  [](const std::string& line) {
                      return line.starts_with("option name ") || isForPeople(line) ||
                             (line.starts_with("info depth ") &&
                              (line.find(" score ") != std::string::npos ||
                               line.find(" currmove ") != std::string::npos));
                  }},
             textOf(data, size));
    return 0;
}
