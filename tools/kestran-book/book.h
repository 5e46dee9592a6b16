// kestran-book: shows the opening book, and checks texts of book lines.
#pragma once

#include "notation/numberedGame.h"
#include "opening/polyglot.h"

#include <iosfwd>
#include <string>
#include <vector>

// Prints the book's moves in a position, each with its count and the chance to be drawn.
void printBookMoves(const PolyglotBook& book, const Position& position, std::ostream& stream);

// Prints the book from a position as a tree of `depth` plies, each move with its count
// and the chance to be drawn in its position. Lines that meet in a position are counted
// together there.
void printBookTree(const PolyglotBook& book, const NumberedGame& game, int depth,
                   std::ostream& stream);

// Why a line of a book text stops before its end, or an empty text. A line that does not begin with
// a move such as e2e4 is read as readMoves() does. `polyglotCastling` means that castling is
// written as the king taking its own rook.
std::string findLineFault(const std::string& line, bool polyglotCastling);

struct LineFault {
    int line; // from 1
    std::string fault;
};

struct BookCheck {
    int lines = 0;
    std::vector<LineFault> faults;
};

// Checks every line of a text.
BookCheck checkBookText(std::istream& text, bool polyglotCastling);

// The main function of kestran-book.
int bookMain(int argc, const char* const* argv);
