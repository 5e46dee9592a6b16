// Reads and writes positions in FEN.
#pragma once

#include "board/position.h"

#include <string>
#include <vector>

// Sets `position` from FEN text of four to six fields. Does not check the text; readPlayableFen()
// does.
void setFenNotation(Position& position, const std::string& fenString);

// Like setFenNotation(), but leaves the clock at 0 and computes neither the piece list nor derived
// values. Returns the tokens of the text.
std::vector<std::string> setFenEpdCommon(Position& position, const std::string& fenString);

// Splits FEN text into at most 30 tokens: the eight ranks, separated by "/", and the other fields,
// separated by single blanks.
std::vector<std::string> getFenTokens(const std::string& input);

// Sets `position` from `fen` and returns an empty text. If the position cannot be played, returns
// the reason and leaves `position` unchanged. Ignores extra blanks, castling rights without king
// and rook at home, and an en passant square without the pawn that has just passed over it.
std::string readPlayableFen(Position& position, const std::string& fen);

// The position in FEN, with five fields: the move number is left out.
std::string getFen(const Position& position);
