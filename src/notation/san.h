// Moves in standard algebraic notation, as players write them: Nf3, exd6, O-O, e8=Q, Qh7#.
#pragma once

#include "board/position.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

// A legal move of `position`, with its sign of check or mate.
std::string toSan(const Position& position, const Move& move);

// The number before a move of the side `color`: "2." or "2...". `ply` counts
// half moves from the position that the numbers begin at, whose move is number 1.
std::string moveNumber(Color color, int ply);

// A legal move with its number, such as "2. Nf3" or "2... Nc6".
std::string toNumberedSan(const Position& position, const Move& move, int ply);

// A legal line from `position`, such as "1. e4 e5 2. Nf3"; empty for no moves.
std::string lineToSan(Position position, std::span<const Move> moves, int ply = 0);

// The legal moves of `position` that `text` names: one if it is good, several if it leaves
// open which. It is in algebraic notation, where zeros in castlings, signs of check, marks
// such as "!?" or "e.p." and more of the start than is needed do no harm, or it is e2e4, e7e8q.
std::vector<Move> findMoves(const Position& position, const std::string& text);

// The only move that `text` names; see findMoves(). If there is none, or more than one, `fault`
// becomes what is wrong with the text, such as "is not legal in its position".
std::optional<Move> findMove(const Position& position, const std::string& text, std::string& fault);

// A word without the number of a move before it, such as "12." or "3...". A number alone becomes
// an empty text.
std::string withoutMoveNumber(const std::string& word);

// Whether a word holds nothing but marks after a move, such as "!?", "+" or "e.p.".
bool isMoveMark(const std::string& word);
