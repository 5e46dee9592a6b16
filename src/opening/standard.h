// The data of the standard opening book.
#pragma once

#include <array>
#include <string_view>

// Lines of moves from the start position, four characters a move and one blank
// between moves; castling is the king's move. A line that stands here more than once
// counts as often as it stands: it raises the chance that its moves are drawn.
extern const std::array<std::string_view, 346> STANDARD_LINES;
