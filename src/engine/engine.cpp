#include "engine/engine.h"

#include "base/loggingService.h"
#include "board/makeMove.h"
#include "board/moveGenerator.h"
#include "board/setUp.h"
#include "notation/fen.h"
#include "notation/longAlgebraicMove.h"
#include "search/infoStruct.h"

namespace {

constexpr Milliseconds POLL_INTERVAL = 100;
// How long before the end of its budget a search may be ended.
constexpr Milliseconds DELTA_MILLISECONDS = 50;

// A line of the first legal move, empty if there is none. `isOnly` tells whether there
// is exactly one.
Variant getInitialVariant(const Position& position, bool& isOnly) {
    MoveArray moves;
    const int count = generateLegalMoves(position, moves);
    isOnly = count == 1;
    Variant variant;
    if (count > 0) {
        variant.extend(Variant(), {moves[0], false, false, false});
    }
    return variant;
}

} // namespace

Engine::Engine(const EngineConfig& _config)
    : ida(_config), config(_config), wantedTableSize(_config.hashTableSize) {
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
    game.repetitionHashes.assign(1, _position.carried.hash);
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
        game.repetitionHashes.push_back(game.position.carried.hash);
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
    return search(game, {clockMilliseconds(), milliseconds, infinite});
}

Variant Engine::search(const Game& searchedGame, const TimeBudget& budget) {
    logger.info("Engine.search - milliseconds:", budget.total);
    logger.info([&] { return "Position fen: " + getFen(searchedGame.position); });
    if (joinThread()) {
        logger.info("Old thread joined");
    }

    // From here on there is a move to play, whatever the search does.
    searchNumber = idaVariant.getNextThreadId();
    bool isOnly = false;
    idaVariant.setVariant(getInitialVariant(searchedGame.position, isOnly), searchNumber);
    logger.info("Initial variant set");
    if (isOnly && !budget.infinite) {
        logger.info("only possible move, stopped calculating");
        idaVariant.signalReady(searchNumber);
        return idaVariant.getVariant();
    }

    // The tables belong to this thread until the new one exists.
    applyChanges();
    applyRepetitions(searchedGame);
    searchedPosition = searchedGame.position;
    const auto runSearch = [this, budget, number = searchNumber] {
        ida.generateTree(searchedPosition, budget, number, &idaVariant);
    };
    if (!searchThread.start(runSearch)) {
        logger.error("Thread cannot be created");
        return {};
    }
    waitForEnd(budget);
    idaVariant.signalReady(searchNumber);
    return idaVariant.getVariant();
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
        sleepMilliseconds(POLL_INTERVAL);
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
    return clockMilliseconds() - budget.start >= budget.total - DELTA_MILLISECONDS ||
           idaVariant.isReady();
}

// Begins the path of the search with the positions of the game.
void Engine::applyRepetitions(const Game& searchedGame) {
    ida.getTreeGenerator().getState().path.begin(searchedGame.repetitionHashes);
}
