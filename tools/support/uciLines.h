// The lines that engines write, in forms: text in which # is a whole number from 0, @ one that may
// be negative, % any number of moves, each with a blank before it, and a * at the end any text.
#pragma once

#include "support/plainRules.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct LineParts {
    std::vector<long long> numbers;
    std::vector<std::string> moves;
};

// The numbers and moves of a line that has the form, or nothing if it has not. A number that is
// too large counts as 0.
std::optional<LineParts> matchForm(std::string_view line, std::string_view form);

// Whether the text is written like a move: e2e4 or e7e8q.
bool isMoveText(std::string_view text);

struct UciDialect {
    std::vector<std::string> greeting; // the lines after the name; empty for any
    std::vector<std::string> reports;  // forms of the lines before a `bestmove`
    std::vector<std::string> closing;  // forms of the last one of them; empty if it is like others
};
extern const UciDialect KESTRAN_DIALECT;
extern const UciDialect MODERN_DIALECT;
extern const UciDialect OTHER_DIALECT; // of any other engine

// The dialect of an engine whose answer to `uci` begins with this line.
const UciDialect& dialectOf(const std::string& nameLine);

// What is wrong with the lines of an answer to `go`, the last of which is the `bestmove`, or an
// empty text. Each line has to have a form of the dialect, and each move in it has to be legal
// after those before it; a closing line has to begin with the best move.
std::string findFault(const std::vector<std::string>& lines, const UciDialect& dialect,
                      const plain::Position& board);
