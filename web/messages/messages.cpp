#include "messages/messages.h"

#include "board/makeMove.h"
#include "notation/longAlgebraicMove.h"
#include "notation/san.h"
#include "search/score.h"

#include <array>
#include <utility>

namespace {

// An end of a window; null if it lies outside all mates.
Json boundToJson(int bound) {
    return isBeyondMates(bound) ? Json() : scoreToJson(bound);
}

const char* outcomeOf(IdaNS::GeneratingResult result) {
    switch (result) {
    case IdaNS::FAILLOW:
        return "failed low";
    case IdaNS::FAILHIGH:
        return "failed high";
    case IdaNS::OK:
    case IdaNS::OK_FINISH:
        break;
    }
    return "good";
}

// How a pass ended, in words.
const char* reasonOf(IdaNS::GeneratingResult result) {
    switch (result) {
    case IdaNS::FAILLOW:
        return "The score is at or below the window: the pass is repeated with the lower end open.";
    case IdaNS::FAILHIGH:
        return "The score is at or above the window: the pass is repeated with the upper end open.";
    case IdaNS::OK_FINISH:
        return "A mate, which ends the search.";
    case IdaNS::OK:
        break;
    }
    return "The score lies inside the window.";
}

} // namespace

Json scoreToJson(int score) {
    if (isMate(score)) {
        return {{"mate", movesToMate(score)}};
    }
    return {{"cp", toCentipawns(score)}};
}

Json moveToJson(const Position& position, const Move& move) {
    return {{"uci", LongAlgebraicMove(move).toString()}, {"san", toSan(position, move)}};
}

Json lineToJson(Position position, std::span<const Move> moves) {
    Json line = Json::array();
    for (const Move& move : moves) {
        line.push_back(moveToJson(position, move));
        position = positionAfter(position, move);
    }
    return line;
}

Json endToJson(const GameEnd& end) {
    static constexpr std::array REASONS = {"checkmate", "stalemate", "repetition", "fifty moves",
                                           "material"}; // by EndReason
    return {{"result", end.result},
            {"reason", REASONS.at(static_cast<std::size_t>(end.reason))},
            {"text", end.text}};
}

Json gameToJson(const PgnGame& game) {
    Json tags = Json::array();
    for (const auto& [name, value] : game.tags) {
        tags.push_back({{"name", name}, {"value", value}});
    }
    std::vector<Move> moves;
    Json texts = Json::array();
    for (const PgnMove& played : game.moves) {
        moves.push_back(played.move);
        texts.push_back(LongAlgebraicMove(played.move).toString());
    }
    return {{"tags", std::move(tags)},
            {"fen", getWholeFen(game.start)},
            {"moves", std::move(texts)},
            {"texts", lineToJson(game.start.position, moves)},
            {"result", game.result}};
}

Json passToJson(const Position& root, int number, const PassReport& pass) {
    const std::vector<Move> line = isGood(pass) ? movesOf(pass.line) : std::vector<Move>();
    return {{"type", "pass"},
            {"pass", number},
            {"depth", pass.depth},
            {"outcome", outcomeOf(pass.result)},
            {"reason", reasonOf(pass.result)},
            {"window",
             {{"alfa", boundToJson(pass.window.firstAlpha)},
              {"beta", boundToJson(pass.window.firstBeta)}}},
            {"score", scoreToJson(pass.line.evaluation)},
            {"nodes", pass.allNodes},
            {"passNodes", pass.nodes},
            {"time", pass.time},
            {"nps", nodesPerSecond(pass.allNodes, pass.time)},
            {"hashfull", pass.hashFull},
            {"line", lineToJson(root, line)}};
}

Json answerToJson(const Answer& answer, const WatchedLine& line) {
    return {{"verdict", answer.verdict},
            {"reason", answer.reason},
            {"details", answer.details},
            {"pass", answer.pass},
            {"ply", answer.node},
            {"refutationPly", answer.refutationNode},
            {"refutation", lineToJson(line.getPosition(answer.refutationNode), answer.refutation)}};
}

Json reviewedMoveToJson(const PgnGame& game, const ReviewedMove& move) {
    const Position before = game.after(at(move.ply)).position;
    const int sign = before.colorToMove == WHITE ? 1 : -1;
    return {{"type", "move"},
            {"ply", move.ply},
            {"move", moveToJson(before, move.move)},
            {"before", scoreToJson(sign * move.before)},
            {"after", scoreToJson(sign * move.after)},
            {"best", lineToJson(before, move.best)}};
}

Json costlyMoveToJson(const PgnGame& game, const Review& review, const CostlyMove& move) {
    const Position before = game.after(at(move.ply)).position;
    const ReviewedMove& reviewed = review.moves[at(move.ply)];
    const bool isAfter = move.answer.refutationNode == 1;
    return {{"ply", move.ply},
            {"move", moveToJson(before, reviewed.move)},
            {"cost", toCentipawns(reviewed.getCost())},
            {"reason", move.answer.getSummary()},
            {"refutation",
             isAfter ? lineToJson(positionAfter(before, reviewed.move), move.answer.refutation)
                     : Json::array()}};
}

std::string textOf(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}
