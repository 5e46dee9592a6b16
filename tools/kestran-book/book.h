// kestran-book: shows the opening book, and checks texts of book lines.
#pragma once

#include "notation/numberedGame.h"
#include "opening/polyglot.h"

#include <iosfwd>
#include <optional>
#include <string>

// Prints the book's moves in a position, each with its count and the chance to be drawn there: a
// list or, if `depth` is given, a tree of that many plies. Lines that meet in a position are
// counted together there.
void printBook(const PolyglotBook& book, const NumberedGame& game, std::optional<int> depth,
               std::ostream& stream);

// Why a line of a book text stops before its end, or an empty text. `polyglotCastling` means that
// castling is written as the king taking its own rook. A line that does not begin with a move such
// as e2e4 is read as readMoves() does, or, if the line `isForEngine`, refused.
std::string findLineFault(const std::string& line, bool polyglotCastling, bool isForEngine = false);

// The main function of kestran-book.
int bookMain(int argc, const char* const* argv);
