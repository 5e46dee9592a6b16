// The data of the standard opening book.
#pragma once

#include <span>
#include <string_view>

// Lines of moves from the start position, four characters a move and one blank
// between moves; castling is the king's move. A line that stands here more than once
// counts as often as it stands: it raises the chance that its moves are drawn.
extern const std::span<const std::string_view> STANDARD_LINES;
