// The engine for browsers and node: answers the requests of web/page/protocol.ts, one at a time.
// Exports `ask`, which takes a request and returns its last answer, both as JSON. The answers
// before it go to Module.onReport, with the bytes that belong to them.

#include "base/clock.h"
#include "board/attacks.h"
#include "board/makeMove.h"
#include "explain/lineAnswer.h"
#include "explain/recorder.h"
#include "explain/review.h"
#include "explain/searchText.h"
#include "messages/messages.h"
#include "notation/longAlgebraicMove.h"
#include "notation/numberedGame.h"
#include "notation/pgnReader.h"
#include "search/hashTable.h"
#include "search/idaVariant.h"
#include "uci/levels.h"

#include <algorithm>
#include <emscripten.h>
#include <map>
#include <span>
#include <stdexcept>
#include <string>

// clang-format off
EM_JS(void, report, (const char* text, const void* bytes, int length), {
    Module.onReport(UTF8ToString(text), bytes ? HEAPU8.slice(bytes, bytes + length).buffer : null);
});
// clang-format on

namespace {

constexpr int DEFAULT_HASH = 16; // mebibytes

// Hands on an answer that is not the last one.
void send(const Json& answer, std::span<const MoveRecord> records = {}) {
    report(textOf(answer).c_str(), records.data(), static_cast<int>(records.size_bytes()));
}

// A request that cannot be answered. The message is for the user.
struct BadRequest : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A PGN text that cannot be read.
struct BadPgn : BadRequest {
    explicit BadPgn(const PgnFault& fault)
        : BadRequest(fault.reason), line(fault.line), column(fault.column) {}
    int line;
    int column;
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
    Json levels = Json::array();
    for (const Level& level : LEVELS) {
        levels.push_back(level.rating);
    }
    return {{"type", "done"},
            {"version", KESTRAN_VERSION},
            {"endings", std::move(endings)},
            {"levels", std::move(levels)}};
}

// ---- position ----

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
        answer["end"] = endToJson(*end);
    }
    return answer;
}

// ---- search and record ----

SearchLimits readLimits(const Json& request, const Position& root) {
    const Json& given = request.at("limits");
    SearchLimits limits;
    limits.depth = std::clamp(given.value("depth", MAX_PASSES), 1, MAX_PASSES);
    limits.nodes = std::max<std::int64_t>(given.value("nodes", SearchLimits::ANY_NODES), 1);
    limits.useBook = request.value("useBook", false);
    if (const auto elo = request.find("elo"); elo != request.end()) {
        limitTo(getLevelForRating(elo->get<int>()), limits);
    }
    for (const auto& text : request.value("rootMoves", Json::array())) {
        limits.rootMoves.push_back(readMove(root, text.get<std::string>(), 1));
    }
    return limits;
}

// Reports each pass, with the records of `recorder` if there is one. Returns the answer after them.
Json searchAndReport(const Json& request, const SearchRequest& search, IdaVariant* slot,
                     Recorder* recorder) {
    const EngineConfig config = readConfig(request);
    const auto ida = makeSearch(config);
    if (recorder != nullptr) {
        ida->watchBy(*recorder);
    }
    const Position& root = search.game.position;
    int number = 0;
    const auto passes = searchPasses(*ida, search, slot, [&](const PassReport& pass) {
        Json json = passToJson(root, number++, pass);
        std::span<const MoveRecord> records;
        if (recorder != nullptr) {
            json["records"] = {{"hasQuiscence", recorder->hasQuiscence()},
                               {"plies", recorder->getTreePlies()}};
            records = recorder->getRecords();
        }
        send(json, records);
    });

    const PassReport* const good = findLastGood(passes);
    const Variant line = good != nullptr ? good->line : Variant();
    const std::vector<Move> moves = movesOf(line);
    const Json texts = lineToJson(root, moves);
    return {{"type", "done"},
            {"best", !moves.empty() ? texts[0] : Json()},
            {"ponder", moves.size() > 1 ? texts[1] : Json()},
            {"fromBook", !moves.empty() && line.get(0).isOpening}};
}

Json answerSearch(const Json& request) {
    const NumberedGame game = readGame(request);
    IdaVariant slot;
    slot.getNextThreadId();
    const Json& limits = request.at("limits");
    if (const auto time = limits.find("time"); time != limits.end()) {
        slot.setDeadline(clockMilliseconds() + time->get<Milliseconds>());
    }
    const SearchRequest search = {0, readLimits(request, game.position), game};
    return searchAndReport(request, search, &slot, nullptr);
}

Json answerRecord(const Json& request) {
    Recorder recorder;
    const SearchRequest search = depthRequest(readGame(request), request.at("depth"));
    return searchAndReport(request, search, nullptr, &recorder);
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

// ---- readPgn, writePgn and review ----

std::vector<PgnGame> readGames(const std::string& text) {
    PgnReader reader(text);
    std::vector<PgnGame> games;
    while (auto game = reader.next()) {
        games.push_back(std::move(*game));
    }
    if (reader.getFault()) {
        throw BadPgn(*reader.getFault());
    }
    return games;
}

Json answerReadPgn(const Json& request) {
    const std::vector<PgnGame> all = readGames(request.at("text").get<std::string>());
    const std::size_t most = request.value("most", all.size());
    Json games = Json::array();
    for (const PgnGame& game : std::span(all).first(std::min(most, all.size()))) {
        games.push_back(gameToJson(game));
    }
    return {{"type", "done"}, {"games", std::move(games)}, {"count", all.size()}};
}

Json answerWritePgn(const Json& request) {
    PgnGame game;
    game.start = readStart(request);
    game.result = request.at("result").get<std::string>();
    for (const auto& tag : request.at("tags")) {
        game.setTag(tag.at("name").get<std::string>(), tag.at("value").get<std::string>());
    }
    const Json comments = request.value("comments", Json::array());
    for (const Move& move : readMoves(game.start.position, request.at("moves"))) {
        const std::size_t ply = game.moves.size();
        game.moves.push_back({.move = move});
        if (ply < comments.size()) {
            game.moves.back().comment = comments[ply].get<std::string>();
        }
    }
    return {{"type", "done"}, {"text", toPgn(game)}};
}

Json answerReview(const Json& request) {
    const std::vector<PgnGame> games = readGames(request.at("pgn").get<std::string>());
    const std::size_t number = request.at("game");
    if (number >= games.size()) {
        throw BadRequest("there is no such game in the text");
    }
    const PgnGame& game = games[number];
    const std::int64_t nodes = std::max<std::int64_t>(request.at("nodes").get<std::int64_t>(), 1);
    const auto reportMove = [&](const ReviewedMove& move) {
        Json json = reviewedMoveToJson(game, move);
        json["count"] = game.moves.size();
        send(json);
    };
    const Review review = reviewGame(readConfig(request), game, nodes, reportMove);
    Json costliest = Json::array();
    for (const CostlyMove& move : review.costliest) {
        costliest.push_back(costlyMoveToJson(game, review, move));
    }
    return {{"type", "done"},
            {"costliest", std::move(costliest)},
            {"pgn", toPgn(annotate(game, review))}};
}

// ---- All requests ----

Json answer(const std::string& text) {
    using Answerer = Json (*)(const Json&);
    static const std::map<std::string, Answerer> answerers = {
        {"about", answerAbout},       {"position", answerPosition}, {"search", answerSearch},
        {"record", answerRecord},     {"why", answerWhy},           {"readPgn", answerReadPgn},
        {"writePgn", answerWritePgn}, {"review", answerReview}};
    try {
        const Json request = Json::parse(text);
        const auto answerer = answerers.find(request.at("type").get<std::string>());
        if (answerer == answerers.end()) {
            throw BadRequest("there is no such request");
        }
        return answerer->second(request);
    } catch (const BadPgn& fault) {
        return {{"type", "error"},
                {"message", fault.what()},
                {"line", fault.line},
                {"column", fault.column}};
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
