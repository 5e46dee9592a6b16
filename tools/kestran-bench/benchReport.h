// The report on the searches of the bench, as text and as JSON.
#pragma once

#include "board/position.h"
#include "search/searchRequest.h"
#include "support/json.h"

#include <iosfwd>
#include <string>
#include <vector>

// A position of the bench and its searches.
struct BenchedPosition {
    std::string fen;
    Position position{};
    int depth = 0;                      // plies
    SearchResult result{};              // of the last run; the same in each but for the time
    std::vector<Milliseconds> millis{}; // of the search, run by run
};

// Adds the result of one more run. Throws std::runtime_error if its nodes differ from those of the
// runs before.
void addRun(BenchedPosition& position, const SearchResult& result);

// One line for a position; its time is the median of its runs. A score is in thousandths of a pawn,
// or "mate +3", "mate -3" for the side to move that mates or is mated in that number of moves, or
// "mated".
void printPosition(std::size_t number, const BenchedPosition& position, std::ostream& stream);

// The whole report as one object. Requires a position and a run.
Json toJson(const std::vector<BenchedPosition>& positions, int hashMebibytes);

// Of the report as one object, time and speed of a run, of several runs the median and the
// extremes, and, last, the nodes of all searches of a run together.
void printSummary(const Json& report, std::ostream& stream);
