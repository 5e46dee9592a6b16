#include "messages/messages.h"

#include "board/makeMove.h"
#include "notation/longAlgebraicMove.h"
#include "notation/san.h"
#include "search/score.h"

#include <cmath>

namespace {

// An end of a window; null if it lies outside all mates.
Json boundToJson(int bound) {
    const bool isOpen = bound < MATED_EVALUATION || bound > -MATED_EVALUATION;
    return isOpen ? Json() : scoreToJson(bound);
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
    constexpr double CENTIPAWN = 10;
    return {{"cp", std::lround(score / CENTIPAWN)}};
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

Json passToJson(const Position& root, int number, const PassReport& pass, int hashfull) {
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
            {"hashfull", hashfull},
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

std::string textOf(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}
