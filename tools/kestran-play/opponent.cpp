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
#include <iomanip>
#include <sstream>

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

bool isFromBook(const SearchResult& thought) {
    return thought.line.varLength > 0 && thought.line.get(0).isOpening;
}

int depthOf(const SearchResult& thought) {
    return thought.report ? thought.report->depth : 0;
}

std::string nodesText(const Level* level) {
    return level == nullptr ? "any" : countText(level->nodes);
}

std::string ratingText(const Level* level) {
    return level == nullptr ? "by its time" : "about " + std::to_string(level->rating);
}

} // namespace

const Level* getLevel(int number) {
    return number == LEVEL_COUNT ? nullptr : &LEVELS[at(number - 1)];
}

std::string getLevelTable() {
    std::ostringstream text;
    text << "Level  Nodes for each move  Rating (an estimate)\n";
    for (int number = 1; number <= LEVEL_COUNT; ++number) {
        const Level* level = getLevel(number);
        text << std::setw(5) << number << std::setw(21) << nodesText(level) << "  "
             << ratingText(level) << '\n';
    }
    return text.str();
}

std::string describeLevel(int number) {
    const Level* level = getLevel(number);
    return nodesText(level) + (level == nullptr ? " number of" : "") +
           " nodes for each move, rating " + ratingText(level);
}

SearchResult Opponent::think(const Game& game) {
    SearchRequest request;
    const Milliseconds usualTime = strength.level == nullptr ? DEFAULT_TIME : LONGEST_TIME;
    request.limits.time = {clockMilliseconds(), strength.time.value_or(usualTime)};
    request.limits.depth = strength.depth;
    if (strength.level != nullptr) {
        limitTo(*strength.level, request.limits);
    }
    request.limits.onlyMoveDepth = 1;
    request.game = game;
    return engine->search(request);
}

std::string Opponent::explain(const NumberedGame& game, const SearchResult& thought,
                              const std::optional<Move>& other) const {
    const Move& played = thought.line.get(0).move;
    const std::string book = isFromBook(thought) ? bookReason(game, played) : "";
    const bool isAboutPlayed = !other || testMoveEquality(*other, played);
    if (!book.empty() && isAboutPlayed) {
        return "It " + book;
    }
    const int depth = book.empty() ? std::max(depthOf(thought), 1) : DEPTH_BESIDE_BOOK;
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

std::string describe(const NumberedGame& game, const SearchResult& thought) {
    const std::string moves = lineToSan(game.position, movesOf(thought.line), game.ply);
    if (isFromBook(thought)) {
        return moves + ", from the book";
    }
    return moves + ", " + scoreText(thought.line.evaluation) + sideText(game.position) +
           " at depth " + std::to_string(depthOf(thought));
}
