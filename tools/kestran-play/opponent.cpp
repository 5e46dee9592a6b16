#include "kestran-play/opponent.h"

#include "explain/treeGeneratorDebug.h"
#include "kestran-explain/explain.h"
#include "kestran-explain/lineAnswer.h"
#include "kestran-explain/searchLimit.h"
#include "kestran-explain/searchText.h"
#include "kestran-explain/watchedLine.h"
#include "support/san.h"

#include <algorithm>

namespace {

constexpr Milliseconds TIME_TO_EXPLAIN = 10000;
constexpr int DEPTH_BESIDE_BOOK = 4;  // plies, where the engine has not searched
constexpr double PART_TO_WATCH = 0.7; // the rest is for what a single move is worth

} // namespace

Opponent::Opponent(const Strength& _strength)
    : strength(_strength), config(EngineConfig::getProdConfig()),
      engine(std::make_unique<Engine>(
          *config, WaitPolicy{.interval = 10, .margin = 0, .isWokenByEnd = true})) {
}

Thought Opponent::think(const Game& game) {
    SearchRequest request;
    request.limits.time = {clockMilliseconds(), strength.time};
    request.limits.depth = strength.depth;
    request.limits.onlyMoveDepth = 1;
    request.game = game;
    const SearchResult result = engine->search(request);
    const Variant& line = result.line;
    const bool isFromBook = line.varLength > 0 && line.get(0).isOpening;
    return {movesOf(line), line.evaluation, result.report ? result.report->depth : 0, isFromBook};
}

std::string Opponent::explain(const NumberedGame& game, const Thought& thought,
                              const std::optional<Move>& other) const {
    if (thought.isFromBook && !other) {
        return "That is a move of its book, with which it does not search. " +
               bookText(game.position);
    }
    const int depth = thought.isFromBook ? DEPTH_BESIDE_BOOK : std::max(thought.depth, 1);
    const std::vector<Move> line = {other.value_or(thought.line.front())};
    SearchLimit limit(TIME_TO_EXPLAIN);
    Explain record;
    const std::vector<PassReport> passes =
        watchSearch(*config, game, line, depth, record, &limit.begin(PART_TO_WATCH));
    if (passes.empty()) {
        return "There was no time to find out.";
    }
    const WatchedLine watched(game, record, passes);
    return answerInWords(*config, game, watched, limit);
}

std::string describe(const Position& position, const Thought& thought, int ply) {
    const std::string moves = lineToSan(position, thought.line, ply);
    if (thought.isFromBook) {
        return moves + ", from the book";
    }
    return moves + ", " + scoreText(thought.score) + sideText(position) + " at depth " +
           std::to_string(thought.depth);
}
