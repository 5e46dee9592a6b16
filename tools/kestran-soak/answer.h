// What the engine may say, word for word.
#pragma once

#include "support/naiveRules.h"

#include <stdexcept>
#include <string>
#include <vector>

// An engine that does not keep to the protocol. The message is for a person.
class ProtocolFault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// How one of the engines speaks.
struct Dialect {
    std::vector<std::string> greeting; // the answer to `uci`, line by line
    // The forms of a report and of the closing line: what stands before the moves, and behind
    // them. Each # is a whole number from 0, @ one that may be below 0.
    std::vector<std::string> reportStarts; // one of them
    std::string reportEnd;
    bool isClosedByReport; // otherwise by "info pv" and moves
};
extern const Dialect KESTRAN;
extern const Dialect KESTRAN_TESTER;

// The dialect whose greeting begins with `line`, KESTRAN if none does.
const Dialect& dialectOf(const std::string& line);

// Whether the line ends the answer to a `go`.
bool isLastOfAnswer(const std::string& line);

// The move of the answer to a `go`: reports, a closing line and the `bestmove`, which comes
// last, all as the dialect has them. Each line is held against its form, and its moves against the
// rules on `board`; but the first move of the closing line may be illegal, which is for the caller
// to judge. ProtocolFault for anything else.
std::string readAnswer(const std::vector<std::string>& lines, const NaiveBoard& board,
                       const Dialect& dialect);
