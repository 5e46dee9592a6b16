// The facade between the protocol and the search: the game as it has been set up, and
// the timed search on it.
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

// How the thread that asked for a timed search waits for its end.
struct WaitPolicy {
    Milliseconds interval = 100; // time between two looks at the clock and the stop listener
    Milliseconds margin = 50;    // a search is ended this long before the end of its budget
    bool isWokenByEnd = false;   // whether it wakes at once when the search ends, and by wake()
};

// The game may be set up at any time, by one thread. Searches run one after another, on one
// further thread; each works on the snapshot of the game in its request.
class Engine {
public:
    // A depth without end for searchDepth(): no book, and all passes that there are.
    static constexpr int INFINITE_MAGIC_DEPTH = 100000;

    // `_config` is shared and must outlive the object. The game is the start position.
    explicit Engine(const EngineConfig& _config, const WaitPolicy& _waitPolicy = {});
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    // Ends a search thread that still runs, and waits for it.
    ~Engine();

    // ---- The game ----

    // Begin a new game: from the start position, from FEN text, from a position. Text
    // that cannot be played leaves the game as it was; the result is the reason, empty
    // otherwise.
    void init();
    std::string init(const std::string& fen);
    void init(const Position& _position);
    // Plays a move given as long algebraic text. A text that names no legal move is
    // ignored.
    void doMoveLongAlgebraic(const std::string& move);

    const Position& getPosition() const { return game.position; }
    const Game& getGame() const { return game; }

    // ---- The table ----

    // The wanted size of the transposition table, in entries. It may be set at any time and takes
    // effect with the next search. If there is no memory for it then, it becomes 0.
    void setHashTableSize(int entries) { wantedTableSize = entries; }
    int getHashTableSize() const { return wantedTableSize; }
    // Brings the table to the wanted size. No search may run.
    void applyChanges();

    // ---- The search ----

    // Both listeners are not owned and must outlive the searches. Null for none.
    void setInfoListener(InfoListenerInterface* listener) { ida.setInfoListener(listener); }
    void setStopListener(StopListenerInterface* listener) { stopListener = listener; }

    // The timed search. Returns when the time is up, the search has ended by itself or a stop
    // was requested; its thread may still be winding down, and the next search waits for it.
    // The line is empty if there is no legal move, or if no thread could be created.
    SearchResult search(const SearchRequest& request);
    // Makes the waiting thread ask the stop listener at once, if its policy lets it be woken.
    void wake() { idaVariant.wake(); }

    // Searches of the current game on the calling thread: to the configured depth, to `depth`,
    // and for the move alone. A game that is over has no move.
    SearchResult search();
    SearchResult searchDepth(int depth, bool useBook = true);
    std::optional<Move> searchMove();

    // Waits for the last search thread. False if there is none.
    bool joinThread() { return searchThread.join(); }

    TreeGenerator& getTreeGenerator() { return ida.getTreeGenerator(); }

private:
    void doMoveEngine(const Move& move);
    SearchResult searchHere(int depth, bool useBook);
    bool isTimeUp(const TimeBudget& budget);
    void waitForEnd(const TimeBudget& budget);
    SearchResult stopAndTakeResult(const SearchRequest& request, int threadId);

    StopListenerInterface* stopListener = nullptr;
    Ida ida;
    Game game;
    const EngineConfig& config;
    const WaitPolicy waitPolicy;
    std::atomic<int> wantedTableSize;
    IdaVariant idaVariant; // shared with the search thread
    int lastThreadId = 0;  // the last number drawn from idaVariant
    Thread searchThread;
};
