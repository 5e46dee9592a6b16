#include "search/ida.h"

#include "base/loggingService.h"
#include "search/idaVariant.h"
#include "search/infoStruct.h"

#include <algorithm>

namespace {

// How many times the time left the last pass may have taken for another to start.
constexpr double SAFE_RATIO = 2.0;

// A bound of the window, kept inside the full one.
int windowBound(std::int64_t score) {
    return static_cast<int>(
        std::clamp<std::int64_t>(score, DEFAULT_FIRST_ALFA, DEFAULT_FIRST_BETA));
}

bool isGood(IdaNS::GeneratingResult result) {
    return result == IdaNS::OK || result == IdaNS::OK_FINISH;
}

} // namespace

template <class Observer>
void BasicIda<Observer>::generateTree(Position& position, Variant& variant) {
    generateTree(position, variant, config->treeMaxDepth);
}

template <class Observer>
void BasicIda<Observer>::generateTree(Position& position, Variant& variant, int depth,
                                      bool infinite) {
    const Milliseconds clockStart = clockMilliseconds();
    generator.setIdaVariant(nullptr); // an older search's flag may still be up
    prepareSearch(-1);
    const int deepest = std::min(depth, MAX_PASSES);
    for (int actualDepth = 1; actualDepth <= deepest;) {
        const IdaNS::GeneratingResult result =
            generateTreeIdaOneLoop(position, variant, actualDepth, infinite);
        if (!isGood(result)) {
            continue; // the same depth again, in the new window
        }
        report(variant, actualDepth, clockStart);
        if (result == IdaNS::OK_FINISH) {
            return;
        }
        ++actualDepth;
    }
}

template <class Observer>
void BasicIda<Observer>::generateTree(Position& position, Milliseconds milliseconds, int threadId,
                                      IdaVariant* idaVariant) {
    const bool infinite = milliseconds == INFINITE_MILLISECONDS;
    PolyglotBook::resetRand();
    generator.setIdaVariant(idaVariant);
    const Milliseconds clockStart = clockMilliseconds();
    prepareSearch(milliseconds);
    if (idaVariant == nullptr) {
        logger.error("idaVariant is NULL");
        return;
    }

    double lastDuration = -1.0;
    Milliseconds lastCheck = clockStart;
    Variant variant;
    for (int actualDepth = 1; actualDepth <= MAX_PASSES;) {
        const IdaNS::GeneratingResult result =
            generateTreeIdaOneLoop(position, variant, actualDepth, infinite);
        // What an abandoned pass leaves is no result, whatever its score looks like.
        if (generator.isAbandoned()) {
            break;
        }
        if (isGood(result)) {
            // A drawn or finished root has no line, but there is a move to play.
            if (variant.varLength > 0) {
                idaVariant->setVariant(variant, threadId);
            }
            if (result == IdaNS::OK || infinite) {
                report(variant, actualDepth, clockStart);
            }
            if (result == IdaNS::OK_FINISH) {
                break;
            }
            ++actualDepth;
        }
        if (!infinite &&
            timeUp(milliseconds, lastDuration, lastCheck, clockStart, result, idaVariant)) {
            break;
        }
    }
    idaVariant->signalReady(threadId);
}

template <class Observer>
IdaNS::GeneratingResult BasicIda<Observer>::generateTreeIdaOneLoop(Position& position,
                                                                   Variant& variant,
                                                                   int actualDepth, bool infinite) {
    generator.actualMoveDepth = actualDepth;
    generator.generateTree(position, variant, infinite);
    const IdaNS::GeneratingResult result = judgePass(variant);
    generator.getObserver().explainEndTreePass(result);
    return result;
}

// The outcome of a pass that ended with `variant`; sets the window of the next pass.
template <class Observer>
IdaNS::GeneratingResult BasicIda<Observer>::judgePass(const Variant& variant) {
    if (isBottomMateLimit(variant.evaluation) || isUpperMateLimit(variant.evaluation)) {
        logger.debug("upper / bottom mate limit reached, returning evaluation");
        return IdaNS::OK_FINISH;
    }
    // A failed pass says only on which side the score lies: that side is opened, the
    // other one closed to just past the bound that failed.
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

template <class Observer>
bool BasicIda<Observer>::timeUp(Milliseconds totalMilliseconds, double& lastDuration,
                                Milliseconds& lastCheck, Milliseconds clockStart,
                                IdaNS::GeneratingResult result, IdaVariant* idaVariant) {
    if (idaVariant->isReady()) {
        logger.info("Ida variant ready from ida");
        return true;
    }
    const Milliseconds now = clockMilliseconds();
    const auto actualMilliseconds = static_cast<double>(now - clockStart);
    const auto total = static_cast<double>(totalMilliseconds);
    if (actualMilliseconds >= total + BasicTreeGenerator<Observer>::SAFE_BEFORE_TIMEOUT) {
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

// Empties what the passes of one search share.
template <class Observer> void BasicIda<Observer>::prepareSearch(Milliseconds milliseconds) {
    generator.resetSearchedNodes();
    generator.setTimer(milliseconds);
    generator.clearTable();
    generator.clearKillersTable();
    generator.setDefaultFirstAlfaBeta();
}

template <class Observer>
void BasicIda<Observer>::report(const Variant& variant, int actualDepth, Milliseconds clockStart) {
    if (infoListener == nullptr) {
        return;
    }
    const Milliseconds elapsed = clockMilliseconds() - clockStart;
    const std::int64_t nodes = generator.getSearchedAllNodes();
    infoListener->onInfo({.nodesSearched = nodes,
                          .nodesPerSec = nodesPerSecond(nodes, elapsed),
                          .depth = actualDepth,
                          .selDepth = config->quiscenceMaxDepth + actualDepth,
                          .pv = variant,
                          .time = elapsed});
}

template <class Observer> void BasicIda<Observer>::setNewLine(const Variant& variant) {
    generator.mainLineToCheck.clear();
    std::copy_if(variant.variantMoves.begin(), variant.variantMoves.begin() + variant.varLength,
                 std::back_inserter(generator.mainLineToCheck),
                 [](const VariantMove& move) { return !move.isQuiscence; });
}

template class BasicIda<NoObserver>;
template class BasicIda<ObservedBy>;
