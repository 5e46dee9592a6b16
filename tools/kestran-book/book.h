// kestran-book: looks into the opening book, and checks texts that books are made of.
#pragma once

#include "opening/polyglot.h"

#include <iosfwd>
#include <string>
#include <vector>

// A move of the book in a position.
struct BookChoice {
    Move move;
    int count; // entries that name it
};

// The book's moves in a position, the most frequent first; of equals, the one that came
// into the book first.
std::vector<BookChoice> getBookChoices(const PolyglotBook& book, const Position& position);

// Prints the book's moves in a position, each with its count and the chance to be drawn.
void printBookMoves(const PolyglotBook& book, const Position& position, std::ostream& stream);

// Prints the book from a position as a tree of `depth` plies, each move with its count
// and the chance to be drawn in its position. Lines that meet in a position are counted
// together there.
void printBookTree(const PolyglotBook& book, const Position& position, int depth,
                   std::ostream& stream);

// Why a line of a book text stops before its end, or an empty text. `polyglotCastling`
// means that castling is written as the king taking its own rook.
std::string findLineFault(const std::string& line, bool polyglotCastling);

// Reports each line of a text with a fault as "NAME:NUMBER: ...", and a sum. Returns
// whether there is none.
bool checkBookText(std::istream& text, const std::string& name, bool polyglotCastling,
                   std::ostream& stream);

// The tool. Returns its exit status.
int bookMain(int argc, const char* const* argv);
