// Positions with a known answer, and how a search within a limit answers them.
#pragma once

#include "base/clock.h"
#include "notation/epd.h"
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

struct SolveOptions {
    std::optional<Milliseconds> time; // for each position
    std::optional<int> nodes;         // for each position
    int hashMebibytes;
    std::vector<std::string> settings{}; // of the engine
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

// Searches a position with empty tables.
Solution solve(const Puzzle& puzzle, const SolveOptions& options);

void printSolution(std::size_t number, const Solution& solution, std::ostream& stream);
// How many positions are solved, of those that can be.
void printSummary(const std::vector<Solution>& solutions, std::ostream& stream);
Json toJson(const std::vector<Solution>& solutions, const SolveOptions& options);
