// The words for what a search did with a move. Scores are in pawns.
#pragma once

#include "explain/watchedLine.h"

#include <cstdint>
#include <string>

// A score such as "+0.31"; "#3" for a mate in three moves, "#-3" for being mated in
// three, "mated" if that has come; "-inf" and "+inf" for what isBeyondMates().
std::string scoreText(int score);

// A count with its digits in groups of three.
std::string countText(std::int64_t count);

// " for White" or " for Black", whoever is to move.
std::string sideText(const Position& position);

// "pass 3 (depth 4)".
std::string passText(const WatchedLine& line, int pass);

// How a pass ended.
std::string resultText(IdaNS::GeneratingResult result);

// Why a move was looked at no deeper.
std::string endingText(MoveEnding ending);

// The same with the verdict on its score. lmf's moves have none.
std::string endingText(MoveEnding ending, Verdict verdict);

// The score of a record, with a sign before it if it is only a bound.
std::string scoreText(const NodeMoveInfo& info);

// The move of a record at node `ply` with the line after it.
std::string lineText(const WatchedLine& line, int ply, const NodeMoveInfo& info);

// The line after the move of a record at node `ply`; empty if there is none.
std::string afterText(const WatchedLine& line, int ply, const NodeMoveInfo& info);

// The line that a good pass reported, and which of it the table has answered; empty if there
// is none.
std::string reportedLineText(const WatchedLine& line, int pass);

// Why the line's move at node `ply` was not tried. Requires line.isLeftOut().
std::string leftOutText(const WatchedLine& line, int pass, int ply);
