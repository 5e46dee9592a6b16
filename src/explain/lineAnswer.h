// The answer to the question why a search did not follow a line.
#pragma once

#include "board/game.h"
#include "explain/watchedLine.h"
#include "search/engineParameters.h"

#include <functional>
#include <string>
#include <vector>

struct Answer {
    std::string verdict{};             // one sentence: what the search preferred
    std::string reason{};              // one sentence: why; may be empty
    std::string details{};             // some sentences
    int pass;                          // the pass that it is about
    int node;                          // where the search left the line, plies from the root
    int refutationNode;                // where `refutation` begins on the line, likewise
    std::vector<Move> refutation = {}; // what is wrong with the line, if that is known

    // The verdict and its reason.
    std::string getSummary() const;
    // All sentences.
    std::string getText() const;
};

// Called before each search; returns the slot that can end it, or null.
using SearchStarter = std::function<IdaVariant*()>;

// Answers for the last good pass. A move of which the record holds only a bound is searched again
// on its own, with an open window. If the line begins with the engine's own move, the best other
// moves are searched as well. What ends one of these searches early is left out of the answer.
Answer answerLine(const EngineConfig& config, const Game& game, const WatchedLine& line,
                  const SearchStarter& begin);
