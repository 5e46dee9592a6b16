// The commands of the modern front end that are not in the protocol: d, eval, go perft, bench.
#pragma once

#include "uci/uciPolicy.h"

#include <string>
#include <vector>

// The diagram, the piece list, the FEN, the key and the checkers of a position, in lines.
std::vector<std::string> describePosition(const Position& position);

// The terms of the static score for both sides, in thousandths of a pawn, and the score for the
// side to move, in lines.
std::vector<std::string> describeEvaluation(const Position& position);

// The command of a line `go perft N` or `bench [N]`; empty if it is neither. If N is bad, says so
// on standard error, and the command does nothing.
LongCommand getLongCommand(const std::vector<std::string>& words, const Position& position);
