// The facade between the protocol and the search: holds the game and runs searches.
#pragma once

#include "base/thread.h"
#include "board/game.h"
#include "search/engineParameters.h"
#include "search/ida.h"
#include "search/idaVariant.h"
#include "search/infoStruct.h"
#include "search/searchLimits.h"
#include "search/timeBudget.h"
#include "search/variant.h"

#include <atomic>
#include <optional>
#include <string>

// How the thread that calls for a timed search waits for its end.
struct WaitPolicy {
    Milliseconds interval = 100; // longest time between two checks of clock and stop listener
    Milliseconds margin = 50;    // a search is ended this long before the end of its budget
    bool isWokenByEnd = false;   // whether wake() and the end of the search interrupt the wait
};

// One thread may set up the game at any time. One thread, the same or another, may run searches,
// one after another. A timed search works on the snapshot of the game in its request.
class Engine {
public:
    // As the depth for searchDepth(): runs all passes, without the book.
    static constexpr int INFINITE_MAGIC_DEPTH = 100000;

    // `_config` is shared and must outlive the object. The game is the start position.
    explicit Engine(const EngineConfig& _config, const WaitPolicy& _waitPolicy = {});
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    // Stops a search thread that is still running and waits for it.
    ~Engine();

    // ---- The game ----

    // Begin a new game from the start position, from FEN text or from a position. If the FEN text
    // cannot be played, the game is unchanged and the result is the reason; otherwise the result is
    // empty.
    void init();
    std::string init(const std::string& fen);
    void init(const Position& _position);
    // Plays a move given as long algebraic text. Ignores a text that names no legal move.
    void doMoveLongAlgebraic(const std::string& move);

    const Position& getPosition() const { return game.position; }
    const Game& getGame() const { return game; }

    // ---- The table ----

    // The wanted size of the transposition table, in entries. It may be set at any time and takes
    // effect with the next search. If there is no memory for it then, it becomes 0.
    void setHashTableSize(int entries) { wantedTableSize = entries; }
    int getHashTableSize() const { return wantedTableSize; }
    // Resizes the table to the wanted size. No search may run.
    void applyChanges();

    // ---- The search ----

    // The listeners are not owned and must outlive the searches. Null for none.
    void setInfoListener(InfoListenerInterface* listener) { ida.setInfoListener(listener); }
    void setStopListener(StopListenerInterface* listener) { stopListener = listener; }

    // The timed search, on a thread of its own. Returns when the time is up, the search has ended
    // by itself or a stop was requested. The search thread may still be winding down; the next
    // search waits for it. The line is empty if there is no legal move, or if no thread could be
    // created.
    SearchResult search(const SearchRequest& request);
    // Makes the waiting thread check the stop listener at once, if WaitPolicy::isWokenByEnd.
    void wake() { idaVariant.wake(); }

    // Search the current game on the calling thread: search() and searchMove() to the configured
    // depth, searchDepth() to `depth`. searchMove() returns only the move, or nothing if there is
    // no legal move.
    SearchResult search();
    SearchResult searchDepth(int depth, bool useBook = true);
    std::optional<Move> searchMove();

    // Waits for the last search thread to end. Returns false if there is none.
    bool joinThread() { return searchThread.join(); }

    TreeGenerator& getTreeGenerator() { return ida.getTreeGenerator(); }

private:
    void doMoveEngine(const Move& move);
    SearchResult searchHere(int depth, bool useBook);
    bool isTimeUp(const TimeBudget& budget);
    void waitForEnd(const SearchLimits& limits);
    bool startClock(TimeBudget& budget);
    SearchResult stopAndTakeResult(const SearchRequest& request, int threadId, Milliseconds start);

    StopListenerInterface* stopListener = nullptr; // not owned
    Ida ida;
    Game game;
    const EngineConfig& config;
    const WaitPolicy waitPolicy;
    std::atomic<int> wantedTableSize; // in entries
    IdaVariant idaVariant;            // shared with the search thread
    int lastThreadId = 0;             // the last number drawn from idaVariant
    Thread searchThread;
};
