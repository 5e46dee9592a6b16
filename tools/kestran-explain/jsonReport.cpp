#include "kestran-explain/jsonReport.h"

#include "explain/searchText.h"
#include "notation/longAlgebraicMove.h"
#include "search/score.h"
#include "support/bookChoices.h"

namespace {

Json toJson(const std::vector<Move>& moves) {
    Json texts = Json::array();
    for (const Move& move : moves) {
        texts.push_back(LongAlgebraicMove(move).toString());
    }
    return texts;
}

// An end of a window; null for none.
Json bound(int score) {
    return isBeyondMates(score) ? Json() : Json(score);
}

// A score in thousandths of a pawn, and the moves to mate if it is a mate.
void addScore(Json& object, int score) {
    object["score"] = score;
    object["mate"] = isMate(score) ? Json(movesToMate(score)) : Json();
}

Json moveToJson(const WatchedLine& line, int pass, int ply, const NodeMoveInfo& info) {
    Json move = {{"move", LongAlgebraicMove(info.move).toString()},
                 {"isOfLine", line.isLineMove(info, ply)},
                 {"isChoice", choiceOf(*line.getNode(pass, ply)) == &info},
                 {"alfa", bound(info.alfa)},
                 {"beta", bound(info.beta)},
                 {"ending", endingText(info.ending)}};
    if (!info.lmfCut) {
        addScore(move, info.principalVariant.evaluation);
        move["isBound"] = isBound(info);
        move["line"] = toJson(movesOf(info.principalVariant));
    }
    return move;
}

// The nodes of the line that a pass came to.
Json nodesToJson(const WatchedLine& line, int pass, bool all) {
    Json nodes = Json::array();
    for (int ply = 0; line.getNode(pass, ply) != nullptr; ++ply) {
        const auto standPat = line.getStandPat(pass, ply);
        Json moves = Json::array();
        for (const NodeMoveInfo* info : line.getRemarkable(pass, ply, all)) {
            moves.push_back(moveToJson(line, pass, ply, *info));
        }
        nodes.push_back({{"ply", ply},
                         {"standPat", standPat ? Json(*standPat) : Json()},
                         {"moves", std::move(moves)}});
        if (line.getLineMove(pass, ply) == nullptr) {
            break;
        }
    }
    return nodes;
}

Json passToJson(const WatchedLine& line, int pass, bool all) {
    const PassReport& report = line.getPass(pass);
    Json json = {{"pass", pass},
                 {"depth", report.depth},
                 {"result", resultText(report.result)},
                 {"nodes", report.nodes}};
    if (isGood(report)) {
        addScore(json, report.line.evaluation);
        json["line"] = toJson(movesOf(report.line));
    }
    json["tree"] = nodesToJson(line, pass, all);
    return json;
}

} // namespace

Json makeJson(const WatchedLine& line, const JsonOptions& options) {
    Json json = {{"schema", 1},
                 {"fen", line.getFen()},
                 {"line", toJson(line.getMoves())},
                 {"answer", options.answer},
                 {"passes", Json::array()},
                 {"book", Json::array()}};
    for (int pass = options.firstPass; pass < options.endPass; ++pass) {
        json["passes"].push_back(passToJson(line, pass, options.all));
    }
    for (const BookChoice& choice :
         getBookChoices(PolyglotBook::getStandard(), line.getPosition(0))) {
        json["book"].push_back(LongAlgebraicMove(choice.move).toString());
    }
    return json;
}
