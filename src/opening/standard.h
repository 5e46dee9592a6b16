// The lines of the standard opening book.
#pragma once

#include <span>
#include <string_view>

// Moves from the start position, four characters each and separated by a blank. A castling is the
// king's move. A line occurs several times if its moves are to be drawn more often.
extern const std::span<const std::string_view> STANDARD_LINES;
