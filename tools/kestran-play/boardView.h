// A board of text, for a terminal.
#pragma once

#include "board/position.h"

#include <string>

struct BoardStyle {
    bool withColours = false; // fields in colours, by escape sequences
    bool withSymbols = false; // chess symbols of Unicode, in UTF-8, in place of letters
    Color bottom = WHITE;     // whose side is near
};

// What suits standard output: colours where isColourWanted(), symbols where it is a terminal
// and the environment names UTF-8.
BoardStyle getUsualStyle();

// The board in ten lines. The fields of `last`, a move that has led to `position`, are marked
// where there are colours; null for none. White's letters are capitals.
std::string drawBoard(const Position& position, const Move* last, const BoardStyle& style);
