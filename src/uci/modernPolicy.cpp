#include "uci/modernPolicy.h"

#include "board/attacks.h"
#include "board/makeMove.h"
#include "board/moveGenerator.h"
#include "notation/longAlgebraicMove.h"
#include "search/evaluation.h"
#include "search/gameLine.h"
#include "search/score.h"
#include "uci/goCommand.h"
#include "uci/levels.h"
#include "uci/uciReports.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <sstream>

namespace {

// The least budget of a move, unless less is left on the clock. Enough for a pass or two.
constexpr Milliseconds SHORTEST = 10;

// The number after the word `name`, if there is one and it is positive.
std::optional<std::int64_t> numberAfter(const std::vector<std::string>& words,
                                        std::string_view name) {
    const auto place = std::find(words.begin(), words.end(), name);
    if (words.end() - place < 2) {
        return std::nullopt;
    }
    const long long number = std::strtoll(place[1].c_str(), nullptr, 10);
    return number > 0 ? std::optional(number) : std::nullopt;
}

// The legal moves among the words after `searchmoves`.
std::vector<Move> getSearchMoves(const std::vector<std::string>& words, const Position& position) {
    MoveArray moves;
    const int count = generateLegalMoves(position, moves);
    std::vector<Move> result;
    const auto place = std::find(words.begin(), words.end(), "searchmoves");
    for (auto word = place; word != words.end() && ++word != words.end();) {
        const int index = LongAlgebraicMove(*word).getIndexOfMove(moves.first(count));
        if (index >= 0) {
            result.push_back(moves[index]);
        }
    }
    return result;
}

// The most that a move may take of the clock. A pass that would not end in time is not started, so
// the average move takes less than half of it.
Milliseconds getClockTime(Milliseconds left, Milliseconds increment, Milliseconds movesToGo) {
    constexpr Milliseconds MOST_MOVES_TO_GO = 35;
    const Milliseconds share = left * 5 / (2 * std::min(movesToGo, MOST_MOVES_TO_GO));
    const Milliseconds most = movesToGo > 1 ? left / 2 : left;
    return std::min(std::max(std::min(share + 3 * increment, most), SHORTEST), left);
}

std::string getScore(int evaluation) {
    return isMate(evaluation) ? "score mate " + std::to_string(movesToMate(evaluation))
                              : getScoreInfo(evaluation);
}

// The score of a position without a search, for the side to move.
int getStaticScore(const Position& position) {
    MoveArray moves;
    if (generateLegalMoves(position, moves) == 0) {
        return isInCheckNoCaching(position) ? MATED_EVALUATION : DRAW_EVALUATION;
    }
    return -totalEval(position, DEFAULT_FIRST_ALFA, DEFAULT_FIRST_BETA);
}

} // namespace

// ---- Commands ----

std::vector<std::string> ModernPolicy::getUciReply(int /*hashMebibytes*/) {
    return getGreeting("Kestran Modern " KESTRAN_VERSION, ModernOptions::getLines());
}

std::optional<int> ModernPolicy::setOption(const std::vector<std::string>& words) {
    return options.set(words);
}

std::vector<std::string> ModernPolicy::answerCommand(const std::vector<std::string>& words,
                                                     const Game& game) {
    if (words[0] == "d") {
        return describePosition(game.position);
    }
    return words[0] == "eval" ? describeEvaluation(game.position) : std::vector<std::string>();
}

std::optional<SearchLimits> ModernPolicy::readGo(const std::vector<std::string>& words,
                                                 const Position& position, Milliseconds start) {
    const std::optional<std::int64_t> depth = numberAfter(words, "depth");
    const std::optional<std::int64_t> nodes = numberAfter(words, "nodes");
    const std::optional<std::int64_t> mate = numberAfter(words, "mate");

    SearchLimits limits = {.time = {start, 0}, .useBook = options.ownBook};
    const bool isLimited = depth || nodes || mate;
    limits.time = getBudget(words, position.colorToMove, start, isLimited);
    limits.nodes = nodes.value_or(SearchLimits::ANY_NODES);
    if (depth) {
        limits.depth = static_cast<int>(std::min<std::int64_t>(*depth, MAX_PASSES));
    }
    if (mate) { // the mating move is the last ply of the last pass
        const auto moves = static_cast<int>(std::min<std::int64_t>(*mate, MAX_PASSES));
        limits.depth = std::min(limits.depth, 2 * moves - 1);
    }
    limits.isPondering = std::find(words.begin(), words.end(), "ponder") != words.end();
    limits.lines = options.lines;
    limits.completesMates = true;
    limits.book = options.book;
    if (options.limitsStrength) {
        limitTo(getLevelForRating(options.rating), limits);
    }
    limits.rootMoves = getSearchMoves(words, position);
    if (!limits.rootMoves.empty()) {
        limits.useBook = false;
    }
    // With a clock alone, a forced move is searched one ply deep, for its score.
    limits.onlyMoveDepth = isLimited ? MAX_PASSES : 1;
    return limits;
}

// Without words about time, a search has unlimited time, and is infinite unless `isLimited`.
TimeBudget ModernPolicy::getBudget(const std::vector<std::string>& words, Color colorToMove,
                                   Milliseconds start, bool isLimited) const {
    constexpr Milliseconds NOT_GIVEN = GoWords::NOT_GIVEN;
    const GoWords go = readGoWords(words);
    constexpr std::array CLOCK_WORDS = {"wtime", "btime", "winc", "binc", "movestogo"};
    const bool isOnClock = std::find_first_of(words.begin(), words.end(), CLOCK_WORDS.begin(),
                                              CLOCK_WORDS.end()) != words.end();
    if (go.infinite || (go.moveTimeLocal == NOT_GIVEN && !isOnClock)) {
        return {start, TimeBudget::UNLIMITED, !isLimited};
    }
    Milliseconds total = TimeBudget::UNLIMITED - 1;
    if (isOnClock) {
        const Milliseconds left =
            std::max<Milliseconds>(go.time[colorToMove] - options.moveOverhead, 0);
        const Milliseconds increment = std::max<Milliseconds>(go.increment[colorToMove], 0);
        total = getClockTime(left, increment, go.movesToGo);
    }
    if (go.moveTimeLocal != NOT_GIVEN) {
        total = std::clamp<Milliseconds>(go.moveTimeLocal, 0, total);
    }
    return {start, total, false, isOnClock && go.moveTimeLocal == NOT_GIVEN};
}

// ---- Searches ----

std::string ModernPolicy::getReportLine(const InfoStruct& report, const Game& game) const {
    std::ostringstream text;
    text << "info depth " << report.depth << " seldepth " << report.selDepth << " multipv "
         << report.lineNumber << ' ' << getScore(report.pv.evaluation) << " nodes "
         << report.nodesSearched << " nps " << report.nodesPerSec << " hashfull " << report.hashFull
         << " time " << report.time;
    Variant line = report.pv;
    cutAtGameEnd(game, line);
    if (line.varLength > 0) {
        text << ' ' << getPvInfo(line);
    }
    return text.str();
}

std::optional<std::string> ModernPolicy::getCurrentMoveLine(const CurrentMove& current) const {
    return "info depth " + std::to_string(current.depth) + " currmove " +
           LongAlgebraicMove(current.move).toString() + " currmovenumber " +
           std::to_string(current.moveNumber);
}

std::vector<std::string> ModernPolicy::getAnswerLines(const SearchResult& result,
                                                      const Game& game) const {
    InfoStruct last = result.report.value_or(InfoStruct{});
    last.pv = result.line;
    last.nodesSearched = result.nodes;
    last.nodesPerSec = nodesPerSecond(result.nodes, result.time);
    last.time = result.time;
    if (!result.report) {
        last.pv.evaluation = getStaticScore(game.position);
    }
    cutAtGameEnd(game, last.pv);
    std::string answer = getBestMove(last.pv);
    if (last.pv.varLength > 1) {
        answer += " ponder " + LongAlgebraicMove(last.pv.get(1).move).toString();
    }
    return {getReportLine(last, game), answer};
}
