#include "engine/engine.h"

#include "base/clock.h"
#include "base/loggingService.h"
#include "board/makeMove.h"
#include "board/moveGenerator.h"
#include "board/setUp.h"
#include "notation/fen.h"
#include "notation/longAlgebraicMove.h"

namespace {

// A line of one move: the first of `rootMoves`, or the first legal one if they are empty. The line
// is empty if there is no legal move. Sets `isOnly` to whether exactly one move is legal.
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

Engine::Engine(const EngineConfig& _config, const WaitPolicy& _waitPolicy)
    : ida(_config), config(_config), waitPolicy(_waitPolicy),
      wantedTableSize(_config.hashTableSize) {
    init();
}

Engine::~Engine() {
    idaVariant.signalReady(lastThreadId);
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
    // Out of memory: the wanted size becomes 0, unless another size has been set meanwhile.
    if (ida.applyChanges(wanted) != wanted) {
        wantedTableSize.compare_exchange_strong(wanted, 0);
    }
}

// ---- The search ----

SearchResult Engine::search(const SearchRequest& request) {
    const Position& position = request.game.position;
    logger.info("Engine.search - milliseconds:", request.limits.time.total);
    logger.info([&] { return "Position fen: " + getFen(position); });
    if (joinThread()) {
        logger.info("Old thread joined");
    }

    const Milliseconds start = clockMilliseconds();
    // After this there is a move to play, whatever the search does.
    const int threadId = lastThreadId = idaVariant.getNextThreadId();
    bool isOnly = false;
    idaVariant.setVariant(getInitialVariant(position, request.limits.rootMoves, isOnly), threadId);
    logger.info("Initial variant set");
    SearchRequest limited = request;
    TimeBudget& budget = limited.limits.time;
    budget.infinite = budget.infinite || limited.limits.isPondering;
    if (isOnly && !budget.infinite) {
        limited.limits.depth = std::min(limited.limits.depth, limited.limits.onlyMoveDepth);
    }
    if (limited.limits.depth == 0) {
        logger.info("only possible move, stopped calculating");
        return stopAndTakeResult(request, threadId, start);
    }

    if (!Thread::RUNS_BESIDE && !budget.infinite) {
        idaVariant.setDeadline(budget.start + budget.total - waitPolicy.margin);
    }
    applyChanges(); // the table belongs to this thread until the new one exists
    const auto runSearch = [this, limited = std::move(limited), threadId] {
        ida.generateTree(limited, threadId, idaVariant);
    };
    if (!searchThread.start(runSearch)) {
        logger.error("Thread cannot be created");
        return {request.number, {}, {}};
    }
    waitForEnd(request.limits);
    return stopAndTakeResult(request, threadId, start);
}

// Ends the search that began at `start` and returns its last published result.
SearchResult Engine::stopAndTakeResult(const SearchRequest& request, int threadId,
                                       Milliseconds start) {
    idaVariant.signalReady(threadId);
    SearchResult result = idaVariant.getResult();
    result.number = request.number;
    result.time = clockMilliseconds() - start;
    return result;
}

SearchResult Engine::search() {
    logger.info("Engine.search()");
    return searchHere(config.treeMaxDepth, true);
}

SearchResult Engine::searchDepth(int depth, bool useBook) {
    logger.info("Engine.search depth() = ", depth);
    return searchHere(depth, useBook && depth != INFINITE_MAGIC_DEPTH);
}

std::optional<Move> Engine::searchMove() {
    logger.info("Engine.searchMove()");
    const Variant line = searchHere(config.treeMaxDepth, true).line;
    return line.varLength > 0 ? std::optional(line.get(0).move) : std::nullopt;
}

// Searches the current game to a depth, on the calling thread.
SearchResult Engine::searchHere(int depth, bool useBook) {
    joinThread();
    applyChanges();
    SearchLimits limits;
    limits.depth = depth;
    limits.useBook = useBook;
    return ida.generateTree({0, limits, game});
}

// Waits for a stop request, the end of the time, or the end of the search.
void Engine::waitForEnd(const SearchLimits& limits) {
    TimeBudget budget = limits.time;
    bool isPondering = limits.isPondering;
    for (;;) {
        if (waitPolicy.isWokenByEnd) {
            idaVariant.waitToBeWoken(waitPolicy.interval);
        } else {
            sleepMilliseconds(waitPolicy.interval);
        }
        const bool isStopped = stopListener != nullptr && stopListener->checkForStop();
        if (isPondering) {
            isPondering = !startClock(budget);
        }
        if (isStopped || (!isPondering && isTimeUp(budget))) {
            return;
        }
    }
}

// Lets the time of a pondering search run, if the listener says so.
bool Engine::startClock(TimeBudget& budget) {
    const auto start = stopListener == nullptr ? std::nullopt : stopListener->getClockStart();
    if (start) {
        budget.start = *start;
        idaVariant.startClock(budget);
    }
    return start.has_value();
}

bool Engine::isTimeUp(const TimeBudget& budget) {
    if (budget.infinite) {
        return false;
    }
    return clockMilliseconds() - budget.start >= budget.total - waitPolicy.margin ||
           idaVariant.isReady();
}
