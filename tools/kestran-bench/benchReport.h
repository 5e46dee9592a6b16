// The report on the searches of the bench, as text and as JSON.
#pragma once

#include "base/clock.h"
#include "board/position.h"
#include "search/variant.h"
#include "support/json.h"

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

// A position of the bench and what its searches have found, which is the same in each run.
struct BenchedPosition {
    std::string fen;
    Position position{};
    int depth = 0;                      // plies
    Variant line{};                     // with its score for the side to move
    std::int64_t nodes = 0;             // moves played by one search
    std::vector<Milliseconds> millis{}; // of the search, run by run
};

struct BenchReport {
    int hashMebibytes; // size of the table
    int runs;          // at least 1
    std::vector<BenchedPosition> positions;
};

// Adds the result of one more run. Throws std::runtime_error if its nodes differ from those of the
// runs before.
void addRun(BenchedPosition& position, const Variant& line, std::int64_t nodes,
            Milliseconds millis);

// The score of a search for a person: thousandths of a pawn, or "mate +3", "mate -3" for
// the side to move that mates or is mated in that number of moves, or "mated".
std::string scoreToString(int evaluation);

// One line for a position; its time is the median of its runs.
void printPosition(std::size_t number, const BenchedPosition& position, std::ostream& stream);

// Time and speed of a run, of several runs the median and the extremes, and, last, the
// nodes of all searches of a run together.
void printSummary(const BenchReport& report, std::ostream& stream);

// The whole report as one object.
Json toJson(const BenchReport& report);
