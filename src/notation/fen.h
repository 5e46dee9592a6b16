// Reads and writes positions in FEN, and rejects those that cannot be played.
#pragma once

#include "board/position.h"

#include <string>
#include <vector>

// Sets `position` from FEN text of four to six fields. Does not check the text.
void setFenNotation(Position& position, const std::string& fenString);

// The same without the clock and the derived values. Returns the tokens of getFenTokens().
std::vector<std::string> setFenEpdCommon(Position& position, const std::string& fenString);

// Splits FEN text into tokens: eight ranks at "/", then the other fields at single blanks.
std::vector<std::string> getFenTokens(const std::string& input);

// Sets `position` from `fen` and returns an empty text. If the position cannot be played, returns
// the reason and leaves `position` unchanged. Extra blanks are ignored. So are a castling right
// without its king and rook at home and an en passant square without the pawn that has just
// passed over it.
std::string readPlayableFen(Position& position, const std::string& fen);

// The position in FEN with five fields; there is no move number.
std::string getFen(const Position& position);
