#include "kestran-play/opponent.h"

#include "explain/lineAnswer.h"
#include "explain/searchText.h"
#include "explain/treeGeneratorDebug.h"
#include "explain/watchedLine.h"
#include "kestran-explain/searchLimit.h"
#include "notation/san.h"
#include "support/bookChoices.h"
#include "support/text.h"

#include <algorithm>

namespace {

constexpr Milliseconds DEFAULT_TIME = 1000;
constexpr Milliseconds LONGEST_TIME = Milliseconds{MAX_SECONDS} * 1000;
constexpr Milliseconds TIME_TO_EXPLAIN = 10000;
constexpr int DEPTH_BESIDE_BOOK = 4;  // plies, where the engine has not searched
constexpr double PART_TO_WATCH = 0.7; // the rest is for what a single move is worth

// Why the engine played a move of its book, as the end of a sentence that begins with "It".
std::string bookReason(const NumberedGame& game, const Move& played) {
    std::string others;
    for (const auto& [move, count] : getBookChoices(PolyglotBook::getStandard(), game.position)) {
        if (!testMoveEquality(move, played)) {
            others += (others.empty() ? "" : ", ") + toSan(game.position, move);
        }
    }
    return "played " + toNumberedSan(game.position, played, game.ply) +
           " from its book, without a search; " +
           (others.empty() ? "the book has no other move." : "the book also has " + others + '.');
}

} // namespace

Opponent::Opponent(const Strength& _strength)
    : strength(_strength), config(EngineConfig::getProdConfig()),
      engine(std::make_unique<Engine>(
          *config, WaitPolicy{.interval = 10, .margin = 0, .isWokenByEnd = true})) {
}

Thought Opponent::think(const Game& game) {
    SearchRequest request;
    const Milliseconds usualTime = strength.level == nullptr ? DEFAULT_TIME : LONGEST_TIME;
    request.limits.time = {clockMilliseconds(), strength.time.value_or(usualTime)};
    request.limits.depth = strength.depth;
    if (strength.level != nullptr) {
        limitTo(*strength.level, request.limits);
    }
    request.limits.onlyMoveDepth = 1;
    request.game = game;
    const SearchResult result = engine->search(request);
    const Variant& line = result.line;
    const bool isFromBook = line.varLength > 0 && line.get(0).isOpening;
    return {movesOf(line), line.evaluation, result.report ? result.report->depth : 0, isFromBook};
}

std::string Opponent::explain(const NumberedGame& game, const Thought& thought,
                              const std::optional<Move>& other) const {
    const Move& played = thought.line.front();
    const std::string book = thought.isFromBook ? bookReason(game, played) : "";
    const bool isAboutPlayed = !other || testMoveEquality(*other, played);
    if (thought.isFromBook && isAboutPlayed) {
        return "It " + book;
    }
    const int depth = thought.isFromBook ? DEPTH_BESIDE_BOOK : std::max(thought.depth, 1);
    const std::vector<Move> line = {other.value_or(played)};
    SearchLimit limit(TIME_TO_EXPLAIN);
    Explain record;
    const std::vector<PassReport> passes = watchSearch(
        *makeSearch(*config), depthRequest(game, depth), line, record, &limit.begin(PART_TO_WATCH));
    if (passes.empty()) {
        return "There was no time to find out.";
    }
    const WatchedLine watched(game, record, passes);
    return answerLine(*config, game, watched, [&limit] { return &limit.begin(1.0); }).getText() +
           (book.empty() ? "" : " In the game it " + book);
}

std::string describe(const Position& position, const Thought& thought, int ply) {
    const std::string moves = lineToSan(position, thought.line, ply);
    if (thought.isFromBook) {
        return moves + ", from the book";
    }
    return moves + ", " + scoreText(thought.score) + sideText(position) + " at depth " +
           std::to_string(thought.depth);
}
