#include "search/ida.h"

#include "base/loggingService.h"
#include "search/idaVariant.h"
#include "search/infoStruct.h"
#include "search/score.h"

#include <algorithm>

namespace {

// The number of a search that nobody waits for.
constexpr int NO_THREAD = 0;

// A bound of the window, kept inside the full one.
int windowBound(std::int64_t score) {
    return static_cast<int>(
        std::clamp<std::int64_t>(score, DEFAULT_FIRST_ALFA, DEFAULT_FIRST_BETA));
}

bool isGood(IdaNS::GeneratingResult result) {
    return result == IdaNS::OK || result == IdaNS::OK_FINISH;
}

} // namespace

void Ida::generateTree(Position& position, Variant& variant) {
    generateTree(position, variant, config.treeMaxDepth);
}

void Ida::generateTree(Position& position, Variant& variant, int depth, bool infinite) {
    const Milliseconds clockStart = clockMilliseconds();
    generator.setIdaVariant(nullptr); // an older search's flag may still be up
    prepareSearch({.time = {clockStart, -1}});
    const int deepest = std::min(depth, MAX_PASSES);
    for (int actualDepth = 1; actualDepth <= deepest;) {
        const auto result = generateTreeIdaOneLoop(position, variant, actualDepth, infinite);
        if (!result || !isGood(*result)) {
            continue; // the same depth again, in the new window
        }
        report(getReport(variant, actualDepth, clockStart, NO_THREAD));
        if (result == IdaNS::OK_FINISH) {
            return;
        }
        ++actualDepth;
    }
}

void Ida::generateTree(Position& position, const SearchLimits& limits, int threadId,
                       IdaVariant* idaVariant) {
    const TimeBudget& budget = limits.time;
    const bool infinite = budget.isUnlimited();
    PolyglotBook::resetRand();
    generator.setIdaVariant(idaVariant);
    const Milliseconds clockStart = clockMilliseconds();
    prepareSearch(limits);
    if (idaVariant == nullptr) {
        logger.error("idaVariant is NULL");
        return;
    }

    double lastDuration = -1.0;
    Milliseconds lastCheck = clockStart;
    Variant variant;
    for (int actualDepth = 1; actualDepth <= limits.depth;) {
        const auto result =
            generateTreeIdaOneLoop(position, variant, actualDepth, infinite || !limits.useBook);
        if (result && isGood(*result)) {
            const InfoStruct info = getReport(variant, actualDepth, clockStart, threadId);
            publish(info, *result, idaVariant);
            if (result == IdaNS::OK || infinite) {
                report(info);
            }
            ++actualDepth;
        }
        const bool isOver = infinite ? result == IdaNS::OK_FINISH
                                     : timeUp(budget.total, lastDuration, lastCheck, clockStart,
                                              result.value_or(IdaNS::FAILHIGH), idaVariant);
        if (isOver || !result) {
            break;
        }
    }
    idaVariant->signalReady(threadId);
}

std::optional<IdaNS::GeneratingResult> Ida::generateTreeIdaOneLoop(Position& position,
                                                                   Variant& variant,
                                                                   int actualDepth,
                                                                   bool skipOpening) {
    generator.setActualMoveDepth(actualDepth);
    generator.generateTree(position, variant, skipOpening);
    // What an abandoned pass leaves is no result, whatever its score looks like.
    if (generator.isAbandoned()) {
        return std::nullopt;
    }
    const IdaNS::GeneratingResult result = judgePass(variant);
    if (observer != nullptr) {
        observer->explainEndTreePass(result);
    }
    return result;
}

// The outcome of a pass that ended with `variant`; sets the window of the next pass.
IdaNS::GeneratingResult Ida::judgePass(const Variant& variant) {
    if (isBottomMateLimit(variant.evaluation) || isUpperMateLimit(variant.evaluation)) {
        logger.debug("upper / bottom mate limit reached, returning evaluation");
        return IdaNS::OK_FINISH;
    }
    // A failed pass tells only on which side the score lies. That side is opened, and the
    // other one is closed to just past the bound that failed.
    if (variant.evaluation <= generator.firstAlpha) {
        const int oldActualAlphaLimit = generator.firstAlpha;
        generator.setDefaultFirstAlfaBeta();
        generator.firstBeta = oldActualAlphaLimit + 1;
        logger.debug("fail low");
        return IdaNS::FAILLOW;
    }
    if (variant.evaluation >= generator.firstBeta) {
        const int oldActualBetaLimit = generator.firstBeta;
        generator.setDefaultFirstAlfaBeta();
        generator.firstAlpha = oldActualBetaLimit - 1;
        logger.debug("fail high");
        return IdaNS::FAILHIGH;
    }
    if (variant.varLength > 0 && variant.get(0).isOpening) {
        logger.info("found opening move");
        return IdaNS::OK_FINISH;
    }
    setNewLine(variant);
    generator.firstAlpha = windowBound(std::int64_t{variant.evaluation} - ASPIRATION_WINDOW_HALF);
    generator.firstBeta = windowBound(std::int64_t{variant.evaluation} + ASPIRATION_WINDOW_HALF);
    logger.debug("normal deepening");
    return IdaNS::OK;
}

bool Ida::timeUp(Milliseconds totalMilliseconds, double& lastDuration, Milliseconds& lastCheck,
                 Milliseconds clockStart, IdaNS::GeneratingResult result, IdaVariant* idaVariant) {
    if (idaVariant->isReady()) {
        logger.info("Ida variant ready from ida");
        return true;
    }
    const Milliseconds now = clockMilliseconds();
    const auto actualMilliseconds = static_cast<double>(now - clockStart);
    const auto total = static_cast<double>(totalMilliseconds);
    if (actualMilliseconds >= total + SAFE_BEFORE_TIMEOUT) {
        return true;
    }
    if (!isGood(result)) {
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

void Ida::watchBy(SearchObserver& _observer) {
    observer = &_observer;
    generator.watchBy(_observer);
}

// Empties what the passes of one search share, and hands them its limits.
void Ida::prepareSearch(const SearchLimits& limits) {
    generator.resetSearchedNodes();
    generator.setNodeLimit(limits.nodes);
    generator.setRootMoves(limits.rootMoves);
    generator.setTimer(limits.time.total);
    generator.clearTable();
    generator.clearKillersTable();
    generator.setDefaultFirstAlfaBeta();
}

// Publishes the line of a good pass, and says so if no deeper pass follows.
void Ida::publish(const InfoStruct& info, IdaNS::GeneratingResult result, IdaVariant* idaVariant) {
    idaVariant->setReport(info);
    if (result == IdaNS::OK_FINISH) {
        idaVariant->signalReady(info.threadId);
    }
}

// All that is told of a good pass that has just ended.
InfoStruct Ida::getReport(const Variant& variant, int actualDepth, Milliseconds clockStart,
                          int threadId) {
    const Milliseconds elapsed = clockMilliseconds() - clockStart;
    const std::int64_t nodes = generator.getState().nodes.getSearchedAllNodes();
    return {.nodesSearched = nodes,
            .nodesPerSec = nodesPerSecond(nodes, elapsed),
            .depth = actualDepth,
            .selDepth = generator.getState().getQuiscenceMaxDepth() + actualDepth,
            .pv = variant,
            .time = elapsed,
            .threadId = threadId};
}

void Ida::report(const InfoStruct& info) {
    if (infoListener != nullptr) {
        infoListener->onInfo(info);
    }
}

void Ida::setNewLine(const Variant& variant) {
    generator.mainLineToCheck.clear();
    std::copy_if(variant.variantMoves.begin(), variant.variantMoves.begin() + variant.varLength,
                 std::back_inserter(generator.mainLineToCheck),
                 [](const VariantMove& move) { return !move.isQuiscence; });
}
