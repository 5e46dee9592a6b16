// What the opening book offers in a position.
#pragma once

#include "opening/polyglot.h"

#include <optional>
#include <vector>

// A move of the book in a position.
struct BookChoice {
    Move move;
    int count; // entries that name it
};

// The book's moves in a position, the most frequent first; of equals, the one that came
// into the book first.
std::vector<BookChoice> getBookChoices(const PolyglotBook& book, const Position& position);

// The legal move of `position` that an entry of the book names, or nothing.
std::optional<Move> findLegalMove(const Position& position, const PolyglotEntry& entry);
