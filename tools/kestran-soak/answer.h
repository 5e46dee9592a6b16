// What the engine may say, word for word.
#pragma once

#include "support/naiveRules.h"

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

// An engine that does not keep to the protocol. The message is for a person.
class ProtocolFault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The answer to `uci`, line by line.
extern const std::array<std::string, 4> GREETING;

// Whether the line ends the answer to a `go`.
bool isLastOfAnswer(const std::string& line);

// The move of the answer to a `go`: reports, a closing line and the `bestmove`, which comes
// last. Each line is held against its form, and its moves against the rules on `board`; but
// the first move of the closing line may be illegal, which is for the caller to judge.
// ProtocolFault for anything else.
std::string readAnswer(const std::vector<std::string>& lines, const NaiveBoard& board);
