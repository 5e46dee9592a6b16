// The lines of the standard opening book.
#pragma once

#include <span>
#include <string_view>

// Each line is moves from the start position, four characters each, separated by blanks. A castling
// is written as the king's move. A line is listed several times if its moves are to be drawn more
// often.
extern const std::span<const std::string_view> STANDARD_LINES;
