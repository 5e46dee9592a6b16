#include "search/idaVariant.h"

#include "base/loggingService.h"

#include <chrono>

int IdaVariant::getNextThreadId() {
    const std::lock_guard lock(pMutex);
    ready = false;
    isWoken = false;
    startedClock.reset();
    deadline.reset();
    return ++fakeThreadId;
}

void IdaVariant::setVariant(const Variant& variantPar, int _threadId) {
    logger.debug([&] { return variantToString(variantPar); });
    const std::lock_guard lock(pMutex);
    if (fakeThreadId == _threadId) {
        published = {0, variantPar, {}};
    }
}

void IdaVariant::setReport(const InfoStruct& info, int _threadId) {
    logger.debug([&] { return variantToString(info.pv); });
    const std::lock_guard lock(pMutex);
    if (fakeThreadId == _threadId) {
        if (info.pv.varLength > 0) {
            published.line = info.pv;
        }
        published.line.evaluation = info.pv.evaluation;
        published.report = info;
    }
}

void IdaVariant::setNodes(std::int64_t nodes) {
    const std::lock_guard lock(pMutex);
    published.nodes = nodes;
}

void IdaVariant::startClock(const TimeBudget& budget) {
    const std::lock_guard lock(pMutex);
    startedClock = budget;
}

std::optional<TimeBudget> IdaVariant::getStartedClock() {
    const std::lock_guard lock(pMutex);
    return startedClock;
}

void IdaVariant::setDeadline(Milliseconds clock) {
    const std::lock_guard lock(pMutex);
    deadline = clock;
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
    return ready || (deadline && clockMilliseconds() >= *deadline);
}

SearchResult IdaVariant::getResult() {
    const std::lock_guard lock(pMutex);
    return published;
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
