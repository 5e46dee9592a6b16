// kestran-book: looks into the opening book, and checks texts that books are made of.
#pragma once

#include "opening/polyglot.h"

#include <iosfwd>
#include <string>

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
