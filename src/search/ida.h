// Iterative deepening: runs the passes of depth 1, 2, 3 and so on, each in a narrow
// window around the score of the last good one, and decides when to stop.
#pragma once

#include "base/platform.h"
#include "search/generatorInterface.h"
#include "search/treeGenerator.h"

class IdaVariant;
class InfoListenerInterface;

namespace IdaNS {

// The outcome of one pass.
enum GeneratingResult : int {
    FAILLOW = 0,   // the score is at or below firstAlpha: to be repeated
    FAILHIGH = 1,  // the score is at or above firstBeta: to be repeated
    OK = 2,        // the score lies inside the window: deepening goes on
    OK_FINISH = 3, // a mate or a book move: no deeper pass follows
};

} // namespace IdaNS

// `Observer` is told of every move and pass; see searchObserver.h.
template <class Observer> class BasicIda final : public GeneratorInterface {
public:
    // Half the width of the window around the score of a good pass: a little over
    // half a pawn, in thousandths.
    static constexpr int ASPIRATION_WINDOW_HALF = 550;
    // The deepest pass: a line holds so many moves, and the killers so many plies.
    static constexpr int MAX_PASSES = MAX_VARIANT_MOVES;
    // The budget that means no limit, in milliseconds.
    static constexpr Milliseconds INFINITE_MILLISECONDS = 2147483647;

    // `_config` is shared and must outlive the object.
    explicit BasicIda(EngineConfig* _config) : generator(_config), config(_config) {}

    // The depth search, on the calling thread, to `depth` plies but no deeper than
    // MAX_PASSES; without a depth, to the configured one. `variant` gets the line. An
    // infinite search does not ask the book. Every good pass is reported.
    void generateTree(Position& position, Variant& variant) override;
    void generateTree(Position& position, Variant& variant, int depth, bool infinite = false);

    // The timed search: deepens as long as another pass is worth its time, publishes
    // and reports each good pass, and raises the ready flag when it has finished. It
    // ends early when that flag goes up. `threadId` is the search's number. The
    // position may stand anywhere inside the tree afterwards.
    void generateTree(Position& position, Milliseconds milliseconds, int threadId,
                      IdaVariant* idaVariant);

    // One pass; sets the window of the next one. Not to be asked about a pass that
    // getTreeGenerator().isAbandoned() tells of: its result means nothing.
    IdaNS::GeneratingResult generateTreeIdaOneLoop(Position& position, Variant& variant,
                                                   int actualDepth, bool infinite);

    // Whether the timed search must end after a pass with this result. `lastDuration`
    // is the time from one good pass to the next, below 0 before the first, and
    // `lastCheck` the clock at the last good one: both are kept here.
    bool timeUp(Milliseconds totalMilliseconds, double& lastDuration, Milliseconds& lastCheck,
                Milliseconds clockStart, IdaNS::GeneratingResult result, IdaVariant* idaVariant);

    void applyChanges() { generator.applyChanges(); }
    void setInfoListener(InfoListenerInterface* listener) { infoListener = listener; }
    HashTable<RepetitionEntry>& getRepetitionTable() { return generator.getRepetitionTable(); }
    BasicTreeGenerator<Observer>& getTreeGenerator() { return generator; }

private:
    IdaNS::GeneratingResult judgePass(const Variant& variant);
    void prepareSearch(Milliseconds milliseconds);
    void report(const Variant& variant, int actualDepth, Milliseconds clockStart);
    void setNewLine(const Variant& variant);

    BasicTreeGenerator<Observer> generator;
    EngineConfig* config;                          // not owned
    InfoListenerInterface* infoListener = nullptr; // not owned
};

// The search that plays, and the same search under somebody's eyes.
using Ida = BasicIda<NoObserver>;
using WatchedIda = BasicIda<ObservedBy>;

extern template class BasicIda<NoObserver>;
extern template class BasicIda<ObservedBy>;
