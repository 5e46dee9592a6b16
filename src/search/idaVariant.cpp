#include "search/idaVariant.h"

#include "base/loggingService.h"

#include <algorithm>
#include <chrono>

namespace {

// A copy without the unset moves after the line.
Variant clone(const Variant& source) {
    Variant copy;
    copy.varLength = source.varLength;
    copy.evaluation = source.evaluation;
    std::copy_n(source.variantMoves.begin(), source.varLength, copy.variantMoves.begin());
    return copy;
}

InfoStruct clone(const InfoStruct& source) {
    return {source.nodesSearched, source.nodesPerSec, source.depth,   source.selDepth,
            clone(source.pv),     source.time,        source.threadId};
}

} // namespace

int IdaVariant::getNextThreadId() {
    const std::lock_guard lock(pMutex);
    ready = false;
    isWoken = false;
    return ++fakeThreadId;
}

void IdaVariant::setVariant(const Variant& variantPar, int _threadId) {
    logger.debug([&] { return variantToString(variantPar); });
    const std::lock_guard lock(pMutex);
    if (fakeThreadId == _threadId) {
        report = {};
        report.pv = clone(variantPar);
    }
}

void IdaVariant::setReport(const InfoStruct& info) {
    logger.debug([&] { return variantToString(info.pv); });
    const std::lock_guard lock(pMutex);
    if (fakeThreadId == info.threadId) {
        Variant line = clone(info.pv.varLength > 0 ? info.pv : report.pv);
        line.evaluation = info.pv.evaluation;
        report = clone(info);
        report.pv = line;
    }
}

void IdaVariant::signalReady(int _fakeThreadId) {
    const std::lock_guard lock(pMutex);
    if (fakeThreadId == _fakeThreadId) {
        ready = true;
        isWoken = true;
        woken.notify_all();
    }
}

bool IdaVariant::isReady() {
    const std::lock_guard lock(pMutex);
    return ready;
}

Variant IdaVariant::getVariant() {
    const std::lock_guard lock(pMutex);
    return clone(report.pv);
}

InfoStruct IdaVariant::getReport() {
    const std::lock_guard lock(pMutex);
    return clone(report);
}

void IdaVariant::wake() {
    const std::lock_guard lock(pMutex);
    isWoken = true;
    woken.notify_all();
}

void IdaVariant::waitToBeWoken(Milliseconds duration) {
    std::unique_lock lock(pMutex);
    woken.wait_for(lock, std::chrono::milliseconds(duration), [this] { return isWoken; });
    isWoken = false;
}
