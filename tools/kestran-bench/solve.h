// Positions with a known answer, and how a search within a limit answers them.
#pragma once

#include "base/clock.h"
#include "notation/epd.h"
#include "search/engineParameters.h"
#include "support/json.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

struct Puzzle {
    EpdRecord record;
    std::vector<Move> best;  // one of them is the answer; any move if empty
    std::vector<Move> avoid; // none of them is
};

// The positions of a file with the moves of their operations "bm" and "am". Throws UsageError if
// one of these moves is not legal.
std::vector<Puzzle> readPuzzles(const std::string& path);

// For each position.
struct SolveLimits {
    std::optional<Milliseconds> time{};
    std::optional<int> nodes{};
};

// The best move of a good pass, or, if no pass was finished, a legal move with depth 0.
struct PassAnswer {
    Move move;
    int depth;         // plies
    Milliseconds time; // from the start of the search to the end of the pass
    std::int64_t nodes;
};

struct Solution {
    const Puzzle& puzzle;
    std::vector<PassAnswer> passes; // empty if there is no legal move

    // The first pass of those at the end that have the same best move. Requires a pass.
    const PassAnswer& keptFrom() const;
    // Whether the last answer is right; nothing if the position has neither "bm" nor "am".
    std::optional<bool> isSolved() const;
};

// Searches a position with empty tables. UsageError if there is no memory for the table.
Solution solve(const Puzzle& puzzle, const SolveLimits& limits, const EngineConfig& config);

void printSolution(std::size_t number, const Solution& solution, std::ostream& stream);
// The whole report; "solved" of the positions that can be, "counted", are solved.
Json toJson(const std::vector<Solution>& solutions, const SolveLimits& limits, int hashMebibytes);
