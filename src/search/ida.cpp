#include "search/ida.h"

#include "base/loggingService.h"
#include "board/makeMove.h"
#include "search/gameLine.h"
#include "search/idaVariant.h"
#include "search/score.h"
#include "search/treeNode.h"

#include <algorithm>
#include <cmath>

namespace {

// `score` as a bound of the window, clamped to the full window.
int windowBound(std::int64_t score) {
    return static_cast<int>(
        std::clamp<std::int64_t>(score, DEFAULT_FIRST_ALFA, DEFAULT_FIRST_BETA));
}

// The result of a finished pass and the window of the next one.
struct Verdict {
    IdaNS::GeneratingResult result;
    RootWindow next;
};

// Judges a pass by its score. A failed pass shows only on which side of the window the score lies.
// The next window is open on that side and ends just past the bound that failed.
Verdict judge(const Variant& variant, const RootWindow& window) {
    const int score = variant.evaluation;
    if (isBottomMateLimit(score) || isUpperMateLimit(score)) {
        logger.debug("upper / bottom mate limit reached, returning evaluation");
        return {IdaNS::OK_FINISH, window};
    }
    if (score <= window.firstAlpha) {
        logger.debug("fail low");
        return {IdaNS::FAILLOW, {.firstBeta = window.firstAlpha + 1}};
    }
    if (score >= window.firstBeta) {
        logger.debug("fail high");
        return {IdaNS::FAILHIGH, {.firstAlpha = window.firstBeta - 1}};
    }
    if (variant.varLength > 0 && variant.get(0).isOpening) {
        logger.info("found opening move");
        return {IdaNS::OK_FINISH, window};
    }
    logger.debug("normal deepening");
    return {IdaNS::OK,
            {windowBound(std::int64_t{score} - ASPIRATION_WINDOW_HALF),
             windowBound(std::int64_t{score} + ASPIRATION_WINDOW_HALF)}};
}

InfoStruct reportOf(const SearchPass& pass, const SearchState& state, Milliseconds clockStart,
                    int number) {
    const Milliseconds elapsed = clockMilliseconds() - clockStart;
    return {.nodesSearched = pass.nodes,
            .nodesPerSec = nodesPerSecond(pass.nodes, elapsed),
            .depth = pass.depth,
            .selDepth = state.getQuiscenceMaxDepth() + pass.depth,
            .pv = pass.line,
            .time = elapsed,
            .number = number,
            .lineNumber = pass.lineNumber,
            .hashFull = state.table.getHashTable().getUsedPermille()};
}

// Forecasts the next pass. Passes are cheap and costly in turn, so the forecast uses the last two.
class PassForecast {
public:
    // `nodes` is the total after a good pass.
    void add(std::int64_t nodes) {
        const auto latest = static_cast<double>(nodes) - total;
        previous = total > 0 ? last : latest / FIRST_GROWTH;
        last = latest;
        total = static_cast<double>(nodes);
    }
    // The duration of the next pass at the pace so far.
    double nextDuration(Milliseconds elapsed) const {
        return GROWTH * std::sqrt(last * previous) * static_cast<double>(elapsed) / total;
    }

private:
    // The median pass takes twelve times the geometric mean of the last two. The constant is larger
    // because an abandoned pass costs more than one that was not tried.
    static constexpr double GROWTH = 14;
    static constexpr double FIRST_GROWTH = 5; // in place of the pass before the first

    double last = 0;     // nodes of the last good pass and of the failed ones before it
    double previous = 0; // likewise of the good pass before
    double total = 0;
};

// The legal moves that the root may choose from.
std::vector<Move> getAllowedMoves(const SearchRequest& request) {
    if (!request.limits.rootMoves.empty()) {
        return request.limits.rootMoves;
    }
    MoveArray moves;
    const int count = generateLegalMoves(request.game.position, moves);
    return {moves.begin(), moves.begin() + count};
}

// The lines of a search with several ones.
class RootLines {
public:
    // What the passes of one line hand on to the next depth.
    struct Line {
        Variant variant;
        RootWindow window;
    };

    explicit RootLines(const SearchRequest& request)
        : allowed(getAllowedMoves(request)),
          lines(std::clamp<std::size_t>(allowed.size(), 1, at(request.limits.lines))) {}

    bool areSeveral() const { return lines.size() > 1; }
    Line& getCurrent() { return lines[current]; }

    // Lets the root choose from the moves that the lines before this one do not begin with, the
    // move of the last depth first.
    void setUp(SearchState& state, const Position& position, int depth) {
        state.rootMoves = allowed;
        for (std::size_t before = 0; before < current; ++before) {
            std::erase_if(state.rootMoves, [&](const Move& move) {
                return testMoveEquality(move, lines[before].variant.get(0).move);
            });
        }
        if (state.config.useTable) {
            const Variant& variant = getCurrent().variant;
            state.table.addTableEntry(position, variant.getFirstMove(), depth - 1,
                                      variant.evaluation, DEFAULT_FIRST_ALFA, DEFAULT_FIRST_BETA);
        }
    }

    // Fills in what a pass of the current line means for the depth and for the search.
    void judge(SearchPass& pass) {
        pass.lineNumber = static_cast<int>(current) + 1;
        if (pass.isGood()) {
            isSettled = isSettled && pass.result == IdaNS::OK_FINISH;
            pass.endsDepth = current + 1 == lines.size() || pass.line.varLength == 0;
            pass.endsSearch = pass.endsDepth && isSettled;
        }
    }
    // Goes on to the line of the next pass.
    void advance(const SearchPass& pass) {
        getCurrent().window = pass.next;
        if (pass.endsDepth) {
            current = 0;
            isSettled = true;
        } else if (pass.isGood()) {
            ++current;
        }
    }

private:
    const std::vector<Move> allowed;
    std::vector<Line> lines; // one or more
    std::size_t current = 0;
    bool isSettled = true; // whether the lines of this depth so far are mates or book moves
};

} // namespace

void Ida::deepen(const SearchRequest& request, IdaVariant* idaVariant, const PassCallback& onPass) {
    prepareSearch(request, idaVariant);
    const SearchLimits& limits = request.limits;
    const bool skipOpening = limits.time.isUnlimited() || !limits.useBook || limits.lines > 1;
    const int deepest = std::min(limits.depth, MAX_PASSES);
    Position position = request.game.position;
    RootLines lines(request);
    for (int actualDepth = 1; actualDepth <= deepest;) {
        if (lines.areSeveral()) {
            lines.setUp(generator.state, position, actualDepth);
        }
        auto& [variant, window] = lines.getCurrent();
        SearchPass pass =
            generateTreeIdaOneLoop(position, variant, actualDepth, window, skipOpening);
        lines.judge(pass);
        if (!onPass(pass) || !pass.result || pass.endsSearch) {
            return;
        }
        lines.advance(pass); // a failed pass is repeated
        actualDepth += pass.endsDepth ? 1 : 0;
    }
}

void Ida::generateTree(const SearchRequest& request, int threadId, IdaVariant& idaVariant) {
    PolyglotBook::resetRand();
    const Milliseconds clockStart = clockMilliseconds();
    double lastDuration = -1.0;
    Milliseconds lastCheck = clockStart;
    PassForecast forecast;
    reportRootMovesFrom(clockStart + TIME_TO_FIRST_ROOT_MOVE, request.number);
    deepen(request, &idaVariant, [&](const SearchPass& pass) {
        const std::optional<TimeBudget> started = idaVariant.getStartedClock();
        const TimeBudget budget = started.value_or(request.limits.time);
        idaVariant.setNodes(pass.nodes);
        if (pass.endsDepth) {
            forecast.add(pass.nodes);
        }
        InfoStruct info = reportOf(pass, generator.state, clockStart, request.number);
        if (pass.isGood()) {
            publish(request, info, threadId, idaVariant);
        }
        if (pass.endsSearch) {
            idaVariant.signalReady(threadId);
        }
        if (pass.isGood() &&
            (!pass.endsSearch || budget.isUnlimited() || request.limits.lines > 1)) {
            report(info);
        }
        if (budget.isUnlimited()) {
            return true;
        }
        const Milliseconds now = clockMilliseconds();
        const Milliseconds left = budget.total - (now - budget.start);
        const bool isHopeless = budget.skipsHopelessPasses && pass.endsDepth &&
                                forecast.nextDuration(now - clockStart) > static_cast<double>(left);
        return !isHopeless &&
               !timeUp(budget.total, lastDuration, lastCheck, started ? started->start : clockStart,
                       pass.endsDepth ? *pass.result : IdaNS::FAILHIGH, idaVariant);
    });
    generator.state.nodes.setPollCallback({});
    idaVariant.signalReady(threadId);
}

// Publishes a report if it is that of the best line, and completes its line if that is wanted. The
// line is published before, so that a stop need not wait.
void Ida::publish(const SearchRequest& request, InfoStruct& info, int threadId,
                  IdaVariant& idaVariant) {
    const auto setReport = [&] {
        if (info.lineNumber == 1) {
            idaVariant.setReport(info, threadId);
        }
    };
    setReport();
    if (request.limits.completesMates && isMate(info.pv.evaluation)) {
        completeMate(generator.state.config, request.game, info.pv,
                     [&idaVariant] { return idaVariant.isReady(); });
        setReport();
    }
}

// Lets each poll after `start` report the root move of the pass, if it has changed.
void Ida::reportRootMovesFrom(Milliseconds start, int number) {
    CurrentMove last = {};
    generator.state.nodes.setPollCallback([this, start, number, last]() mutable {
        const TreeNode* root = generator.state.root;
        if (infoListener == nullptr || root == nullptr || clockMilliseconds() < start) {
            return;
        }
        const CurrentMove current = {number, generator.state.actualMoveDepth, *root->move,
                                     root->numberOfLegalMoves};
        if (current.depth != last.depth || current.moveNumber != last.moveNumber) {
            last = current;
            infoListener->onCurrentMove(current);
        }
    });
}

SearchResult Ida::generateTree(const SearchRequest& request) {
    const Milliseconds clockStart = clockMilliseconds();
    SearchResult result = {request.number, {}, {}};
    deepen(request, nullptr, [&](const SearchPass& pass) {
        result.nodes = pass.nodes;
        if (pass.isGood()) {
            const InfoStruct info = reportOf(pass, generator.state, clockStart, request.number);
            if (pass.lineNumber == 1) {
                result.line = pass.line;
                result.report = info;
            }
            report(info);
        }
        return true;
    });
    result.time = clockMilliseconds() - clockStart;
    return result;
}

SearchPass Ida::generateTreeIdaOneLoop(Position& position, Variant& variant, int actualDepth,
                                       const RootWindow& window, bool skipOpening) {
    generator.generateTree(position, variant, actualDepth, window, skipOpening);
    SearchPass pass = {.depth = actualDepth,
                       .window = window,
                       .result = std::nullopt,
                       .next = window,
                       .nodes = generator.state.nodes.getSearchedAllNodes(),
                       .line = variant};
    // The score of an abandoned pass is meaningless, even if it looks like a mate.
    if (generator.state.nodes.isAbandoned()) {
        return pass;
    }
    const auto [result, next] = judge(variant, window);
    pass.result = result;
    pass.next = next;
    if (observer != nullptr) {
        observer->explainEndTreePass(result);
    }
    return pass;
}

void Ida::prepareSearch(const SearchRequest& request, IdaVariant* idaVariant) {
    SearchState& state = generator.state;
    state.nodes.resetSearchedNodes();
    state.nodes.setNodeLimit(request.limits.nodes);
    state.nodes.setIdaVariant(idaVariant);
    state.rootMoves = request.limits.rootMoves;
    state.quiscenceLimit = request.limits.quiscenceDepth;
    generator.setBook(request.limits.book ? *request.limits.book : PolyglotBook::getStandard());
    state.repetitionTable.begin(request.game.repetitionHashes);
    state.table.clearTable();
    state.order.clearKillersTable();
}

bool Ida::timeUp(Milliseconds totalMilliseconds, double& lastDuration, Milliseconds& lastCheck,
                 Milliseconds clockStart, IdaNS::GeneratingResult result, IdaVariant& idaVariant) {
    if (idaVariant.isReady()) {
        logger.info("Ida variant ready from ida");
        return true;
    }
    const Milliseconds now = clockMilliseconds();
    const auto actualMilliseconds = static_cast<double>(now - clockStart);
    const auto total = static_cast<double>(totalMilliseconds);
    if (actualMilliseconds >= total + SAFE_BEFORE_TIMEOUT) {
        return true;
    }
    if (result != IdaNS::OK && result != IdaNS::OK_FINISH) {
        return false;
    }
    const bool isFirstGoodPass = lastDuration < 0;
    lastDuration = isFirstGoodPass ? actualMilliseconds : static_cast<double>(now - lastCheck);
    lastCheck = now;
    if (lastDuration > (total - actualMilliseconds) * SAFE_RATIO) {
        logger.info("Finishing before timeout");
        return true;
    }
    return false;
}

int Ida::applyChanges(int hashTableSize) {
    const int size = generator.state.table.resize(hashTableSize);
    if (size < hashTableSize && infoListener != nullptr) {
        infoListener->onTableMissing();
    }
    return size;
}

void Ida::watchBy(SearchObserver& _observer) {
    observer = &_observer;
    generator.watchBy(_observer);
}

void Ida::report(const InfoStruct& info) {
    if (infoListener != nullptr) {
        infoListener->onInfo(info);
    }
}
