// A board with arrows, for the page. It draws with what PAGE_PIECES defines.
#pragma once

#include "board/position.h"
#include "kestran-explain/htmlWriter.h"

#include <span>

// The pieces of a position, such as "White: Ke1 Qd1 e4; Black: Ke8".
std::string piecesText(const Position& position);

// Draws `position` with an arrow for each move of a legal line from there, in the order of their
// numbers. `text` says it in words.
void drawBoard(HtmlWriter& html, const Position& position, std::span<const Move> line,
               const std::string& text);
