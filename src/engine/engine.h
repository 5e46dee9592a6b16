// The facade between the protocol and the search: the game as it has been set up, and
// the timed search on it.
#pragma once

#include "base/engineParameters.h"
#include "base/platform.h"
#include "board/boardRepresentation.h"
#include "search/ida.h"
#include "search/idaVariant.h"
#include "search/searchRepresentation.h"

#include <cstdint>
#include <optional>
#include <pthread.h>
#include <string>
#include <vector>

class InfoListenerInterface;
class StopListenerInterface;

// A game: where it stands, and the key of every position so far, the present one last.
struct Game {
    Position position;
    std::vector<std::uint64_t> repetitionHashes;
};

// The game may be set up at any time, by one thread. Searches run one after another,
// on one further thread: each works on a game that is handed to it, so that neither
// side disturbs the other.
class Engine {
public:
    // A depth without end for searchDepth(): no book, and all passes that there are.
    static constexpr int INFINITE_MAGIC_DEPTH = 100000;

    // `_config` is shared and must outlive the object. The game is the start position.
    explicit Engine(EngineConfig* _config);
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
    EngineConfig* getConfig() const { return config; }

    // ---- The search ----

    // Both listeners are not owned and must outlive the searches. Null for none.
    void setInfoListener(InfoListenerInterface* listener) { ida.setInfoListener(listener); }
    void setStopListener(StopListenerInterface* listener) { stopListener = listener; }

    // The timed search of a game: at most `milliseconds`, counted from `clockStart`, or
    // without end if `infinite`. Returns the best line found. Its search thread may
    // still be winding down then; the next search waits for it. The line is empty if
    // there is no legal move, or if no thread could be had.
    Variant search(const Game& searchedGame, Milliseconds milliseconds, bool infinite,
                   Milliseconds clockStart);
    // The same of the present game, counted from now.
    Variant search(Milliseconds milliseconds, bool infinite);
    // Searches of the present game on the calling thread: to the configured depth, to
    // `depth`, and for the move alone. A game that is over has no move.
    Variant search();
    Variant searchDepth(int depth);
    std::optional<Move> searchMove();

    // Brings the transposition table to the configured size. No search may run.
    void applyChanges() { ida.applyChanges(); }
    // Waits for the last search thread, if there is one.
    void joinThread();

    TreeGenerator& getTreeGenerator() { return ida.getTreeGenerator(); }

private:
    void doMoveEngine(const Move& move);
    void applyRepetitions(const Game& searchedGame);
    bool isTimeUp(double actualTime, Milliseconds maxMillis, bool infinite);
    void waitForEnd(Milliseconds milliseconds, bool infinite, Milliseconds clockStart);
    static void* pthreadStart(void* pthreadDataVoid);

    StopListenerInterface* stopListener = nullptr;
    Ida ida;
    Game game;
    EngineConfig* config;
    IdaVariant idaVariant; // shared with the search thread
    // The last search thread, if it has not been joined.
    std::optional<pthread_t> threadId;
    int searchNumber = 0; // the last number drawn from idaVariant
};
