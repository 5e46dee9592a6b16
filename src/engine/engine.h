// The facade between the protocol and the search: the game as it has been set up, and
// the timed search on it.
#pragma once

#include "base/platform.h"
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
    Milliseconds interval = 100; // it looks at the clock, and asks for a stop, so often
    Milliseconds margin = 50;    // how long before the end of its budget a search is ended
    bool isWokenByEnd = false;   // whether it wakes at once when the search ends, and by wake()
};

// The game may be set up at any time, by one thread. Searches run one after another,
// on one further thread: each works on a game that is handed to it, so that neither
// side disturbs the other.
class Engine {
public:
    // A depth without end for searchDepth(): no book, and all passes that there are.
    static constexpr int INFINITE_MAGIC_DEPTH = 100000;

    // `_config` is shared and must outlive the object. The game is the start position.
    explicit Engine(const EngineConfig& _config, const WaitPolicy& _waiting = {});
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    // Ends a search thread that still runs, and waits for it.
    ~Engine();

    // ---- The game ----

    // Begin a new game: from the start position, from FEN text, from a position. Text
    // that cannot be played leaves the game as it was; the result says why, and is
    // empty otherwise.
    void init();
    std::string init(const std::string& fen);
    void init(const Position& _position);
    // Plays a move given as long algebraic text. A text that names no legal move is
    // passed over.
    void doMoveLongAlgebraic(const std::string& move);

    const Position& getPosition() const { return game.position; }
    const Game& getGame() const { return game; }

    // ---- The table ----

    // The wanted size of the transposition table, in entries. It may be set at any time, and
    // is in force from the next search on. If there is no memory for it then, the wanted
    // size becomes 0.
    void setHashTableSize(int entries) { wantedTableSize = entries; }
    int getHashTableSize() const { return wantedTableSize; }
    // Brings the table to the wanted size. No search may run.
    void applyChanges();

    // ---- The search ----

    // Both listeners are not owned and must outlive the searches. Null for none.
    void setInfoListener(InfoListenerInterface* listener) { ida.setInfoListener(listener); }
    void setStopListener(StopListenerInterface* listener) { stopListener = listener; }

    // The timed search of a game. Returns the best line found. Its search thread may
    // still be winding down then; the next search waits for it. The line is empty if
    // there is no legal move, or if no thread could be had.
    Variant search(const Game& searchedGame, SearchLimits limits);
    // The same of the present game, with a time that counts from now.
    Variant search(Milliseconds milliseconds, bool infinite);
    // The line that the last timed search returned, with the report of its pass. All of the
    // report is zero if no pass was finished.
    const InfoStruct& getLastReport() const { return lastReport; }
    // Has the stop listener asked at once, if a search is under way that can be woken.
    void wake() { idaVariant.wake(); }
    // The number of the last timed search, which its reports carry too.
    int getSearchNumber() const { return searchNumber; }
    // Searches of the present game on the calling thread: to the configured depth, to
    // `depth`, and for the move alone. A game that is over has no move.
    Variant search();
    Variant searchDepth(int depth);
    std::optional<Move> searchMove();

    // Waits for the last search thread, if there is one; whether there was.
    bool joinThread() { return searchThread.join(); }

    TreeGenerator& getTreeGenerator() { return ida.getTreeGenerator(); }

private:
    void doMoveEngine(const Move& move);
    Variant searchHere(int depth, bool infinite);
    void applyRepetitions(const Game& searchedGame);
    bool isTimeUp(const TimeBudget& budget);
    void waitForEnd(const TimeBudget& budget);
    const Variant& takeReport();

    StopListenerInterface* stopListener = nullptr;
    Ida ida;
    Game game;
    const EngineConfig& config;
    const WaitPolicy waiting;
    std::atomic<int> wantedTableSize;
    IdaVariant idaVariant; // shared with the search thread
    int searchNumber = 0;  // the last number drawn from idaVariant
    InfoStruct lastReport{};
    // The position that the search thread works on. It may stand anywhere inside the tree
    // afterwards.
    Position searchedPosition;
    Thread searchThread;
};
