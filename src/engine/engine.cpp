#include "engine/engine.h"

#include "base/loggingService.h"
#include "board/makeMove.h"
#include "board/moveGenerator.h"
#include "board/setUp.h"
#include "notation/fen.h"
#include "notation/longAlgebraicMove.h"

namespace {

// A line of the first move of `rootMoves`, or the first legal one if they are empty; without
// moves if there is none. `isOnly` tells whether exactly one is legal.
Variant getInitialVariant(const Position& position, const std::vector<Move>& rootMoves,
                          bool& isOnly) {
    MoveArray moves;
    const int count = generateLegalMoves(position, moves);
    isOnly = count == 1;
    Variant variant;
    if (count > 0) {
        const Move& first = rootMoves.empty() ? moves[0] : rootMoves[0];
        variant.extend(Variant(), {first, false, false, false});
    }
    return variant;
}

} // namespace

Engine::Engine(const EngineConfig& _config, const WaitPolicy& _waiting)
    : ida(_config), config(_config), waiting(_waiting), wantedTableSize(_config.hashTableSize) {
    init();
}

Engine::~Engine() {
    idaVariant.signalReady(searchNumber);
}

// ---- The game ----

void Engine::init() {
    Position start;
    initializeToStartPosition(start);
    init(start);
}

std::string Engine::init(const std::string& fen) {
    Position fromFen;
    std::string fault = readPlayableFen(fromFen, fen);
    if (fault.empty()) {
        init(fromFen);
    }
    return fault;
}

void Engine::init(const Position& _position) {
    game.position = _position;
    game.repetitionHashes.assign(1, _position.incremental.hash);
}

void Engine::doMoveLongAlgebraic(const std::string& move) {
    MoveArray moves;
    const int count = generateMoves(game.position, moves);
    const int index = LongAlgebraicMove(move).getIndexOfMove(moves.first(count));
    if (index >= 0) {
        doMoveEngine(moves[index]);
    }
}

void Engine::doMoveEngine(const Move& move) {
    DoMoveContext context;
    if (doMove(game.position, move, context)) {
        game.repetitionHashes.push_back(game.position.incremental.hash);
    }
}

// ---- The table ----

void Engine::applyChanges() {
    int wanted = wantedTableSize;
    // Unless another size has been asked for meanwhile, tell that there was no memory.
    if (ida.applyChanges(wanted) != wanted) {
        wantedTableSize.compare_exchange_strong(wanted, 0);
    }
}

// ---- The search ----

Variant Engine::search(Milliseconds milliseconds, bool infinite) {
    return search(game, {.time = {clockMilliseconds(), milliseconds, infinite}});
}

Variant Engine::search(const Game& searchedGame, SearchLimits limits) {
    const TimeBudget& budget = limits.time;
    logger.info("Engine.search - milliseconds:", budget.total);
    logger.info([&] { return "Position fen: " + getFen(searchedGame.position); });
    if (joinThread()) {
        logger.info("Old thread joined");
    }

    // From here on there is a move to play, whatever the search does.
    searchNumber = idaVariant.getNextThreadId();
    bool isOnly = false;
    idaVariant.setVariant(getInitialVariant(searchedGame.position, limits.rootMoves, isOnly),
                          searchNumber);
    logger.info("Initial variant set");
    if (isOnly && !budget.infinite) {
        limits.depth = std::min(limits.depth, limits.onlyMoveDepth);
    }
    if (limits.depth == 0) {
        logger.info("only possible move, stopped calculating");
        return takeReport();
    }

    // The tables belong to this thread until the new one exists.
    applyChanges();
    applyRepetitions(searchedGame);
    searchedPosition = searchedGame.position;
    const auto runSearch = [this, limits, number = searchNumber] {
        ida.generateTree(searchedPosition, limits, number, &idaVariant);
    };
    if (!searchThread.start(runSearch)) {
        logger.error("Thread cannot be created");
        lastReport = {};
        return {};
    }
    waitForEnd(budget);
    return takeReport();
}

// Ends the search, and keeps and returns what it has published last.
const Variant& Engine::takeReport() {
    idaVariant.signalReady(searchNumber);
    lastReport = idaVariant.getReport();
    return lastReport.pv;
}

Variant Engine::search() {
    logger.info("Engine.search()");
    return searchHere(config.treeMaxDepth, false);
}

Variant Engine::searchDepth(int depth) {
    logger.info("Engine.search depth() = ", depth);
    return searchHere(depth, depth == INFINITE_MAGIC_DEPTH);
}

std::optional<Move> Engine::searchMove() {
    logger.info("Engine.searchMove()");
    const Variant variant = searchHere(config.treeMaxDepth, false);
    return variant.varLength > 0 ? std::optional(variant.get(0).move) : std::nullopt;
}

// Searches the present game to a depth, on the calling thread.
Variant Engine::searchHere(int depth, bool infinite) {
    joinThread();
    applyChanges();
    applyRepetitions(game);
    Position positionCopy = game.position;
    Variant variant;
    ida.generateTree(positionCopy, variant, depth, infinite);
    return variant;
}

// Sleeps until the search is to end: by a stop request, by time, or by itself.
void Engine::waitForEnd(const TimeBudget& budget) {
    for (;;) {
        if (waiting.isWokenByEnd) {
            idaVariant.waitToBeWoken(waiting.interval);
        } else {
            sleepMilliseconds(waiting.interval);
        }
        const bool isStopped = stopListener != nullptr && stopListener->checkForStop();
        if (isStopped || isTimeUp(budget)) {
            return;
        }
    }
}

bool Engine::isTimeUp(const TimeBudget& budget) {
    if (budget.infinite) {
        return false;
    }
    return clockMilliseconds() - budget.start >= budget.total - waiting.margin ||
           idaVariant.isReady();
}

// Begins the path of the search with the positions of the game.
void Engine::applyRepetitions(const Game& searchedGame) {
    ida.getTreeGenerator().getState().repetitionTable.begin(searchedGame.repetitionHashes);
}
