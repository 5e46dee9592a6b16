// Iterative deepening: runs the passes of depth 1, 2, 3 and so on, each in a narrow
// window around the score of the last good one, and decides when to stop.
#pragma once

#include "base/platform.h"
#include "search/engineParameters.h"
#include "search/generatorInterface.h"
#include "search/infoStruct.h"
#include "search/searchLimits.h"
#include "search/searchObserver.h"
#include "search/timeBudget.h"
#include "search/treeGenerator.h"

#include <optional>

class IdaVariant;

class Ida final : public GeneratorInterface {
public:
    // `_config` is shared and must outlive the object.
    explicit Ida(const EngineConfig& _config) : generator(_config), config(_config) {}

    // The depth search, on the calling thread, to `depth` plies but no deeper than
    // MAX_PASSES; without a depth, to the configured one. `variant` gets the line. An
    // infinite search does not ask the book. Every good pass is reported.
    void generateTree(Position& position, Variant& variant) override;
    void generateTree(Position& position, Variant& variant, int depth, bool infinite = false);

    // The timed search: deepens as long as another pass is worth its time, publishes
    // and reports each good pass, and raises the ready flag when it has finished. It
    // ends early when that flag goes up. `threadId` is the search's number. The
    // position may stand anywhere inside the tree afterwards.
    void generateTree(Position& position, const SearchLimits& limits, int threadId,
                      IdaVariant* idaVariant);
    void generateTree(Position& position, const TimeBudget& budget, int threadId,
                      IdaVariant* idaVariant) {
        generateTree(position, SearchLimits{.time = budget}, threadId, idaVariant);
    }

    // One pass; sets the window of the next one. Nothing if the pass was abandoned: it has
    // no outcome, and the window stays.
    std::optional<IdaNS::GeneratingResult>
    generateTreeIdaOneLoop(Position& position, Variant& variant, int actualDepth, bool skipOpening);

    // Whether the timed search must end after a pass with this result. `lastDuration`
    // is the time from one good pass to the next, below 0 before the first, and
    // `lastCheck` the clock at the last good one: both are kept here.
    bool timeUp(Milliseconds totalMilliseconds, double& lastDuration, Milliseconds& lastCheck,
                Milliseconds clockStart, IdaNS::GeneratingResult result, IdaVariant* idaVariant);

    // From now on `_observer` is told of every move and every pass. It must outlive the
    // searches.
    void watchBy(SearchObserver& _observer);
    void setInfoListener(InfoListenerInterface* listener) { infoListener = listener; }
    // See TreeGenerator::applyChanges().
    int applyChanges(int hashTableSize) { return generator.applyChanges(hashTableSize); }
    TreeGenerator& getTreeGenerator() { return generator; }

private:
    IdaNS::GeneratingResult judgePass(const Variant& variant);
    void prepareSearch(const SearchLimits& limits);
    static void publish(const InfoStruct& info, IdaNS::GeneratingResult result,
                        IdaVariant* idaVariant);
    InfoStruct getReport(const Variant& variant, int actualDepth, Milliseconds clockStart,
                         int threadId);
    void report(const InfoStruct& info);
    void setNewLine(const Variant& variant);

    TreeGenerator generator;
    const EngineConfig& config;
    InfoListenerInterface* infoListener = nullptr; // not owned
    SearchObserver* observer = nullptr;            // not owned
};
