// Positions in FEN: reading, writing, and the check that refuses what cannot be played.
#pragma once

#include "board/position.h"

#include <string>
#include <vector>

// Rebuilds `position` from FEN text of four to six fields. The text is believed as it
// stands, whatever it holds.
void setFenNotation(Position& position, const std::string& fenString);

// The part of it that reads board, side, rights and en passant field into a freshly
// reset position. Returns the tokens: eight ranks, then the other fields.
std::vector<std::string> setFenEpdCommon(Position& position, const std::string& fenString);

// The tokens of FEN text: the first seven cuts are at "/", the rest at single blanks.
std::vector<std::string> getFenTokens(const std::string& input);

// Reads `fen` into `position` and returns an empty text. If it cannot be played,
// returns one sentence that says why and leaves the position alone. Fields are counted as
// a person would: blanks before, after and between them do no harm. Claims that the board
// does not support are dropped: a castling right without its king and rook at home, an en
// passant field without the pawn that has just passed over it.
std::string readPlayableFen(Position& position, const std::string& fen);

// The position in FEN with five fields: no move number.
std::string getFen(const Position& position);
