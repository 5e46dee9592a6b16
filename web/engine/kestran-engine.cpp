// The engine for browsers and node: answers the requests of web/page/protocol.ts, one at a time.
// Exports `ask`, which takes a request and returns its last answer, both as JSON. The answers
// before it go to Module.onReport, with the bytes that belong to them.

#include "base/clock.h"
#include "board/attacks.h"
#include "board/gameEnd.h"
#include "board/makeMove.h"
#include "explain/lineAnswer.h"
#include "explain/recorder.h"
#include "explain/searchText.h"
#include "messages/messages.h"
#include "notation/longAlgebraicMove.h"
#include "notation/numberedGame.h"
#include "search/hashTable.h"

#include <algorithm>
#include <emscripten.h>
#include <map>
#include <stdexcept>
#include <string>

// clang-format off
EM_JS(void, report, (const char* text, const void* bytes, int length), {
    Module.onReport(UTF8ToString(text), bytes ? HEAPU8.slice(bytes, bytes + length).buffer : null);
});
// clang-format on

namespace {

constexpr int DEFAULT_HASH = 16; // mebibytes

// A request that cannot be answered. The message is for the user.
struct BadRequest : std::runtime_error {
    using std::runtime_error::runtime_error;
};

Move readMove(const Position& position, const std::string& text, std::size_t number) {
    MoveArray moves;
    const int count = generateLegalMoves(position, moves);
    const int index = LongAlgebraicMove(text).getIndexOfMove(moves.first(count));
    if (index < 0) {
        throw BadRequest("move " + std::to_string(number) + ", \"" + text +
                         "\", is not legal in its position");
    }
    return moves[index];
}

std::vector<Move> readMoves(Position position, const Json& texts) {
    std::vector<Move> moves;
    for (const auto& text : texts) {
        moves.push_back(readMove(position, text.get<std::string>(), moves.size() + 1));
        position = positionAfter(position, moves.back());
    }
    return moves;
}

NumberedGame readStart(const Json& request) {
    const std::string fen = request.at("fen");
    NumberedGame game = makeNewGame();
    if (fen != "startpos") {
        const std::string fault = readGameStart(game, fen);
        if (!fault.empty()) {
            throw BadRequest("the position cannot be played: " + fault);
        }
    }
    return game;
}

NumberedGame readGame(const Json& request) {
    NumberedGame game = readStart(request);
    for (const Move& move : readMoves(game.position, request.at("moves"))) {
        game.play(move);
    }
    return game;
}

EngineConfig readConfig(const Json& request) {
    EngineConfig config = *EngineConfig::getProdConfig();
    config.hashTableSize = entriesOf(request.value("hash", DEFAULT_HASH));
    return config;
}

Json answerAbout(const Json& /*request*/) {
    Json endings = Json::array();
    for (int ending = 0; ending <= static_cast<int>(MoveEnding::STALEMATE); ++ending) {
        endings.push_back(endingText(static_cast<MoveEnding>(ending)));
    }
    return {{"type", "done"}, {"version", KESTRAN_VERSION}, {"endings", endings}};
}

// ---- position ----

Json endToJson(GameEnd end, Color colorToMove) {
    const bool hasWhiteWon = colorToMove == BLACK;
    switch (end) {
    case GameEnd::CHECKMATE:
        return {
            {"result", hasWhiteWon ? "1-0" : "0-1"},
            {"reason", "checkmate"},
            {"text", std::string("Checkmate: ") + (hasWhiteWon ? "White" : "Black") + " wins."}};
    case GameEnd::STALEMATE:
        return {{"result", "1/2-1/2"},
                {"reason", "stalemate"},
                {"text", "Stalemate: the game is drawn."}};
    case GameEnd::REPETITION:
        return {{"result", "1/2-1/2"},
                {"reason", "repetition"},
                {"text", "The position has come up three times: the game is drawn."}};
    case GameEnd::FIFTY_MOVES:
        return {{"result", "1/2-1/2"},
                {"reason", "fifty moves"},
                {"text", "Fifty moves without a capture or a pawn move: the game is drawn."}};
    case GameEnd::MATERIAL:
        return {{"result", "1/2-1/2"},
                {"reason", "material"},
                {"text", "Neither side has the pieces to mate: the game is drawn."}};
    }
    return {};
}

Json answerPosition(const Json& request) {
    NumberedGame game = readStart(request);
    const Position start = game.position;
    const std::vector<Move> moves = readMoves(start, request.at("moves"));
    Json fens = {getWholeFen(game)};
    for (const Move& move : moves) {
        game.play(move);
        fens.push_back(getWholeFen(game));
    }
    MoveArray legal;
    const int count = generateLegalMoves(game.position, legal);
    Json legalTexts = Json::array();
    for (const Move& move : legal.first(count)) {
        legalTexts.push_back(moveToJson(game.position, move));
    }
    Json answer = {{"type", "done"},
                   {"fens", fens},
                   {"moves", lineToJson(start, moves)},
                   {"turn", game.position.colorToMove == WHITE ? "w" : "b"},
                   {"check", isInCheckNoCaching(game.position)},
                   {"legal", legalTexts}};
    if (const auto end = findGameEnd(game)) {
        answer["end"] = endToJson(*end, game.position.colorToMove);
    }
    return answer;
}

// ---- search and record ----

// Reports each pass of a search, with the records of `recorder` if there is one.
std::vector<PassReport> searchAndReport(Ida& ida, const SearchRequest& request, IdaVariant* slot,
                                        const Recorder* recorder) {
    int number = 0;
    return searchPasses(ida, request, slot, [&](const PassReport& pass) {
        Json json = passToJson(request.game.position, number++, pass, 0);
        const std::vector<MoveRecord> none;
        const auto& records = recorder != nullptr ? recorder->getRecords() : none;
        if (recorder != nullptr) {
            json["records"] = {{"hasQuiscence", recorder->hasQuiscence()},
                               {"plies", recorder->getTreePlies()}};
        }
        report(textOf(json).c_str(), recorder != nullptr ? records.data() : nullptr,
               static_cast<int>(records.size() * sizeof(MoveRecord)));
    });
}

// The answer after the passes of a search.
Json answerSearch(const Position& root, const std::vector<PassReport>& passes) {
    const auto good = std::find_if(passes.rbegin(), passes.rend(), isGood);
    const Variant line = good != passes.rend() ? good->line : Variant();
    const std::vector<Move> moves = movesOf(line);
    const Json texts = lineToJson(root, moves);
    return {{"type", "done"},
            {"best", !moves.empty() ? texts[0] : Json()},
            {"ponder", moves.size() > 1 ? texts[1] : Json()},
            {"fromBook", !moves.empty() && line.get(0).isOpening}};
}

SearchLimits readLimits(const Json& request, const Position& root) {
    const Json& given = request.at("limits");
    SearchLimits limits;
    limits.depth = std::clamp(given.value("depth", MAX_PASSES), 1, MAX_PASSES);
    limits.nodes = std::max<std::int64_t>(given.value("nodes", SearchLimits::ANY_NODES), 1);
    limits.useBook = request.value("useBook", false);
    for (const auto& text : request.value("rootMoves", Json::array())) {
        limits.rootMoves.push_back(readMove(root, text.get<std::string>(), 1));
    }
    return limits;
}

Json answerSearch(const Json& request) {
    const NumberedGame game = readGame(request);
    const EngineConfig config = readConfig(request);
    const auto ida = makeSearch(config);
    const SearchRequest search = {0, readLimits(request, game.position), game};
    return answerSearch(game.position, searchAndReport(*ida, search, nullptr, nullptr));
}

Json answerRecord(const Json& request) {
    const NumberedGame game = readGame(request);
    const EngineConfig config = readConfig(request);
    const auto ida = makeSearch(config);
    Recorder recorder;
    ida->watchBy(recorder);
    const SearchRequest search = depthRequest(game, request.at("depth"));
    return answerSearch(game.position, searchAndReport(*ida, search, nullptr, &recorder));
}

// ---- why ----

Json answerWhy(const Json& request) {
    const NumberedGame game = readGame(request);
    const std::vector<Move> moves = readMoves(game.position, request.at("line"));
    if (moves.empty() || moves.size() > Explain::MAX_LINE) {
        throw BadRequest("the line needs 1 to " + std::to_string(Explain::MAX_LINE) + " moves");
    }
    const EngineConfig config = readConfig(request);
    Explain explain;
    const auto passes = watchSearch(*makeSearch(config), depthRequest(game, request.at("depth")),
                                    moves, explain, nullptr);
    const WatchedLine line(game, explain, passes);
    Json answer = answerToJson(answerLine(config, game, line, [] { return nullptr; }), line);
    answer["type"] = "done";
    return answer;
}

// ---- All requests ----

Json answer(const std::string& text) {
    using Answerer = Json (*)(const Json&);
    static const std::map<std::string, Answerer> answerers = {{"about", answerAbout},
                                                              {"position", answerPosition},
                                                              {"search", answerSearch},
                                                              {"record", answerRecord},
                                                              {"why", answerWhy}};
    try {
        const Json request = Json::parse(text);
        const auto answerer = answerers.find(request.at("type").get<std::string>());
        if (answerer == answerers.end()) {
            throw BadRequest("there is no such request");
        }
        return answerer->second(request);
    } catch (const std::exception& fault) {
        return {{"type", "error"}, {"message", fault.what()}};
    }
}

} // namespace

// The answer stays until the next call.
extern "C" const char* ask(const char* request) {
    static std::string text;
    text = textOf(answer(request));
    return text.c_str();
}
