#include "search/idaVariant.h"

#include "base/loggingService.h"

#include <algorithm>

namespace {

// A copy without the unset moves after the line.
Variant clone(const Variant& source) {
    Variant copy;
    copy.varLength = source.varLength;
    copy.evaluation = source.evaluation;
    std::copy_n(source.variantMoves.begin(), source.varLength, copy.variantMoves.begin());
    return copy;
}

} // namespace

int IdaVariant::getNextThreadId() {
    const std::lock_guard lock(pMutex);
    ready = false;
    return ++fakeThreadId;
}

void IdaVariant::setVariant(const Variant& variantPar, int _threadId) {
    logger.debug([&] { return variantToString(variantPar); });
    const std::lock_guard lock(pMutex);
    if (fakeThreadId == _threadId) {
        variant = clone(variantPar);
    }
}

void IdaVariant::signalReady(int _fakeThreadId) {
    const std::lock_guard lock(pMutex);
    if (fakeThreadId == _fakeThreadId) {
        ready = true;
    }
}

bool IdaVariant::isReady() {
    const std::lock_guard lock(pMutex);
    return ready;
}

Variant IdaVariant::getVariant() {
    const std::lock_guard lock(pMutex);
    return clone(variant);
}
