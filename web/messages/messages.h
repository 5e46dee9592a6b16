// The answers that the page reads, as JSON. web/page/protocol.ts describes them.
#pragma once

#include "board/gameEnd.h"
#include "explain/lineAnswer.h"
#include "explain/passSearch.h"
#include "explain/review.h"
#include "notation/pgn.h"

#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <vector>

using Json = nlohmann::ordered_json;

// A score as hundredths of a pawn or moves to mate.
Json scoreToJson(int score);

// A legal move of `position`, and a legal line from it.
Json moveToJson(const Position& position, const Move& move);
Json lineToJson(Position position, std::span<const Move> moves);

// How a game has ended, and a game that was read.
Json endToJson(const GameEnd& end);
Json gameToJson(const PgnGame& game);

// A pass of a search of `root`; `number` counts from 0.
Json passToJson(const Position& root, int number, const PassReport& pass);

// The answer about a line.
Json answerToJson(const Answer& answer, const WatchedLine& line);

// Parts of the review of a game.
Json reviewedMoveToJson(const PgnGame& game, const ReviewedMove& move);
Json costlyMoveToJson(const PgnGame& game, const Review& review, const CostlyMove& move);

// The JSON text, with replacements for bytes that are not UTF-8.
std::string textOf(const Json& json);
