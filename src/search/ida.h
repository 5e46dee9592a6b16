// Iterative deepening: runs passes of depth 1, 2, 3 and so on, each in a narrow window around the
// score of the last good one, and decides when to stop.
#pragma once

#include "search/engineParameters.h"
#include "search/infoStruct.h"
#include "search/rootWindow.h"
#include "search/searchObserver.h"
#include "search/searchPass.h"
#include "search/searchRequest.h"
#include "search/treeGenerator.h"

#include <functional>

class IdaVariant;

class Ida final {
public:
    // Called after each pass, even an abandoned one. Returns false to end the search.
    using PassCallback = std::function<bool(const SearchPass&)>;

    // `_config` is shared and must outlive the object.
    explicit Ida(const EngineConfig& _config) : generator(_config) {}

    // ---- Searches, each from scratch on the calling thread ----

    // The deepening loop: runs passes until `onPass` returns false, the depth of the request or
    // MAX_PASSES is reached, a pass finds a mate or a book move, or a pass is abandoned because
    // of the node limit or the ready flag of `idaVariant` (null for none, not owned). An unlimited
    // search does not ask the book.
    // With several lines, each depth takes a pass for each line, and each pass leaves out the root
    // moves of the lines before it. There are no more lines than root moves. Such a search does not
    // ask the book, and only a depth whose lines are all mates ends it.
    void deepen(const SearchRequest& request, IdaVariant* idaVariant, const PassCallback& onPass);

    // The timed search: deepens until another pass is not worth its time or the ready flag is
    // raised. Publishes the first line of each depth and reports each good pass; a mate or a book
    // move that ends it is reported only if the time is unlimited or several lines are wanted.
    // Raises the ready flag at its end. `threadId` is the number that `idaVariant` gave to this
    // search.
    void generateTree(const SearchRequest& request, int threadId, IdaVariant& idaVariant);

    // The depth search: deepens to the depth of the request and reports each good pass.
    SearchResult generateTree(const SearchRequest& request);

    // One pass, `actualDepth` plies deep. prepareSearch() must come before the first pass.
    SearchPass generateTreeIdaOneLoop(Position& position, Variant& variant, int actualDepth,
                                      const RootWindow& window, bool skipOpening);

    // Resets what the passes of a search share, and takes over the limits and the game.
    void prepareSearch(const SearchRequest& request, IdaVariant* idaVariant);

    // Whether the timed search must end after a pass with this result. After a good pass, updates
    // `lastCheck` to the clock and `lastDuration` to the milliseconds since the previous good pass;
    // `lastDuration` is negative before the first one.
    static bool timeUp(Milliseconds totalMilliseconds, double& lastDuration,
                       Milliseconds& lastCheck, Milliseconds clockStart,
                       IdaNS::GeneratingResult result, IdaVariant& idaVariant);

    // Completes the line of a mate score that ends before the mate, as it does if the score of one
    // of its moves came from the table. Searches the rest without a table; gives up after a
    // tenth of a second or so, or when `isStopped`, and leaves the line as it is. A mate that is
    // further away than a line is long is left alone.
    static void completeMate(const EngineConfig& config, const Game& game, Variant& line,
                             const std::function<bool()>& isStopped);

    // ---- Set-up; no search may run ----

    // Reports every move and every finished pass to `_observer`, which must outlive the searches.
    void watchBy(SearchObserver& _observer);
    void setInfoListener(InfoListenerInterface* listener) { infoListener = listener; }
    // Resizes the hash table, losing all entries; does nothing if the size is the same. Returns the
    // new size, which is 0 if out of memory; the listener is informed of that.
    int applyChanges(int hashTableSize);
    TreeGenerator& getTreeGenerator() { return generator; }

private:
    void publish(const SearchRequest& request, InfoStruct& info, int threadId,
                 IdaVariant& idaVariant);
    void report(const InfoStruct& info);
    void reportRootMovesFrom(Milliseconds start, int number);

    TreeGenerator generator;
    InfoListenerInterface* infoListener = nullptr; // not owned
    SearchObserver* observer = nullptr;            // not owned
};
