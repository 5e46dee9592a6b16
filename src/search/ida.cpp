#include "search/ida.h"

#include "base/loggingService.h"
#include "board/makeMove.h"
#include "search/gameLine.h"
#include "search/idaVariant.h"
#include "search/passForecast.h"
#include "search/rootLines.h"
#include "search/score.h"
#include "search/treeNode.h"

#include <algorithm>
#include <cstdlib>

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

constexpr std::int64_t MOST_NODES_TO_MATE = 1'000'000; // a tenth of a second

// Appends a line to another one; together they must have room.
void append(Variant& line, const Variant& rest) {
    Variant whole = rest;
    for (int i = line.varLength - 1; i >= 0; --i) {
        whole.extend(Variant(whole), line.get(i));
    }
    whole.evaluation = line.evaluation;
    line = whole;
}

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

void Ida::completeMate(const EngineConfig& config, const Game& game, Variant& line,
                       const std::function<bool()>& isStopped) {
    const int plies = -MATED_EVALUATION - std::abs(line.evaluation);
    const int missing = plies - line.varLength;
    if (!isMate(line.evaluation) || missing <= 0 || plies > MAX_VARIANT_MOVES) {
        return;
    }
    SearchRequest request;
    request.game = game;
    for (int i = 0; i < line.varLength; ++i) {
        playOn(request.game, line.get(i).move);
    }
    request.limits.depth = missing;
    request.limits.nodes = MOST_NODES_TO_MATE;
    request.limits.useBook = false;
    EngineConfig withoutTable = config;
    withoutTable.useTable = false;
    withoutTable.hashTableSize = 0;
    Ida ida(withoutTable);
    NodeCounter& nodes = ida.generator.state.nodes;
    nodes.setPollCallback([&] {
        if (isStopped()) {
            nodes.setNodeLimit(1);
        }
    });
    ida.deepen(request, nullptr, [&](const SearchPass& pass) {
        if (pass.endsSearch && pass.line.varLength <= missing) {
            append(line, pass.line);
        }
        return true;
    });
}

// Lets each poll after `start` report the root move of the pass, if it has changed.
void Ida::reportRootMovesFrom(Milliseconds start, int number) {
    CurrentMove last = {};
    generator.state.nodes.setPollCallback([this, start, number, last]() mutable {
        const TreeNode* root = generator.state.root;
        // The first root move may be polled for before it is tried.
        if (infoListener == nullptr || root == nullptr || root->move == nullptr ||
            clockMilliseconds() < start) {
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
