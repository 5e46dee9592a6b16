#include "engine/engine.h"

#include "base/loggingService.h"
#include "board/moveGenerator.h"
#include "notation/fenCheck.h"
#include "notation/ioFuncs.h"
#include "notation/longAlgebraicMove.h"
#include "search/infoStruct.h"

#include <memory>

namespace {

constexpr Milliseconds POLL_INTERVAL = 100;
// How long before the end of its budget a search may be ended.
constexpr Milliseconds DELTA_MILLISECONDS = 50;

// What a new search thread is handed, and deletes.
struct PthreadData {
    Position position;
    Milliseconds milliseconds;
    int threadId; // the search's number
    IdaVariant* idaVariant;
    Ida* ida;
};

// A line of the first legal move, empty if there is none. `isOnly` tells whether there
// is exactly one.
Variant getInitialVariant(Position position, bool& isOnly) {
    MoveArray moves;
    const int count = generateLegalMoves(position, moves.data());
    isOnly = count == 1;
    Variant variant;
    if (count > 0) {
        variant.extend(Variant(), {moves[0], false, false, false});
    }
    return variant;
}

} // namespace

Engine::Engine(EngineConfig* _config) : ida(_config), config(_config) {
    init();
}

Engine::~Engine() {
    idaVariant.signalReady(searchNumber);
    joinThread();
}

// ---- The game ----

void Engine::init() {
    Position start;
    initializeToStartPosition(start);
    init(start);
}

std::string Engine::init(const std::string& fen) {
    Position fromFen;
    const std::string fault = readPlayableFen(fromFen, fen);
    if (fault.empty()) {
        init(fromFen);
    }
    return fault;
}

void Engine::init(const Position& _position) {
    game.position = _position;
    game.repetitionHashes.assign(1, _position.hash);
}

void Engine::doMoveLongAlgebraic(const std::string& move) {
    MoveArray moves;
    const int count = generateMoves(game.position, moves.data());
    const int index = LongAlgebraicMove(move).getIndexOfMove(moves.data(), count);
    if (index >= 0) {
        doMoveEngine(moves[at(index)]);
    }
}

void Engine::doMoveEngine(const Move& move) {
    DoMoveContext context;
    context.init();
    if (doMove(game.position, move, context)) {
        game.repetitionHashes.push_back(game.position.hash);
    }
}

// ---- The search ----

Variant Engine::search(Milliseconds milliseconds, bool infinite) {
    return search(game, milliseconds, infinite, clockMilliseconds());
}

Variant Engine::search(const Game& searchedGame, Milliseconds milliseconds, bool infinite,
                       Milliseconds clockStart) {
    if constexpr (LOG_ENABLED) {
        logger.info("Engine.search - milliseconds:", milliseconds);
        logger.info("Position fen: " + getFen(searchedGame.position));
    }
    joinThread();

    // From here on there is a move to play, whatever the search does.
    searchNumber = idaVariant.getNextThreadId();
    bool isOnly = false;
    idaVariant.setVariant(getInitialVariant(searchedGame.position, isOnly), searchNumber);
    logger.info("Initial variant set");
    if (isOnly && !infinite) {
        logger.info("only possible move, stopped calculating");
        idaVariant.signalReady(searchNumber);
        return idaVariant.getVariant();
    }

    // The tables belong to this thread until the new one exists.
    applyChanges();
    applyRepetitions(searchedGame);
    auto data = std::make_unique<PthreadData>(
        PthreadData{searchedGame.position, infinite ? Ida::INFINITE_MILLISECONDS : milliseconds,
                    searchNumber, &idaVariant, &ida});
    pthread_t handle;
    if (!createThread(handle, pthreadStart, data.get())) {
        logger.error("Thread cannot be created");
        return {};
    }
    threadId = handle;
    static_cast<void>(data.release()); // the thread's, from here on

    waitForEnd(milliseconds, infinite, clockStart);
    idaVariant.signalReady(searchNumber);
    return idaVariant.getVariant();
}

Variant Engine::search() {
    logger.info("Engine.search()");
    return searchDepth(config->treeMaxDepth);
}

Variant Engine::searchDepth(int depth) {
    logger.info("Engine.search depth() = ", depth);
    joinThread();
    applyChanges();
    applyRepetitions(game);
    Position positionCopy = game.position;
    Variant variant;
    ida.generateTree(positionCopy, variant, depth, depth == INFINITE_MAGIC_DEPTH);
    return variant;
}

std::optional<Move> Engine::searchMove() {
    logger.info("Engine.searchMove()");
    const Variant variant = search();
    return variant.varLength > 0 ? std::optional(variant.get(0).move) : std::nullopt;
}

void Engine::joinThread() {
    if (threadId) {
        ::joinThread(*threadId);
        threadId.reset();
        logger.info("Old thread joined");
    }
}

// Sleeps until the search is to end: by a stop request, by time, or by itself.
void Engine::waitForEnd(Milliseconds milliseconds, bool infinite, Milliseconds clockStart) {
    for (;;) {
        sleepMilliseconds(POLL_INTERVAL);
        const auto elapsed = static_cast<double>(clockMilliseconds() - clockStart);
        if (stopListener != nullptr && stopListener->checkForStop()) {
            return;
        }
        if (isTimeUp(elapsed, milliseconds, infinite)) {
            return;
        }
    }
}

bool Engine::isTimeUp(double actualTime, Milliseconds maxMillis, bool infinite) {
    if (infinite) {
        return false;
    }
    return actualTime >= static_cast<double>(maxMillis - DELTA_MILLISECONDS) ||
           idaVariant.isReady();
}

// Counts the positions of the game, and nothing else, into the repetition table.
void Engine::applyRepetitions(const Game& searchedGame) {
    HashTable<RepetitionEntry>& table = ida.getRepetitionTable();
    for (int i = 0; i < table.getSize(); ++i) {
        table.getEntry(i).clear();
    }
    for (const std::uint64_t key : searchedGame.repetitionHashes) {
        table.getEntry(key).increaseRepetitions(key);
    }
}

void* Engine::pthreadStart(void* pthreadDataVoid) {
    const std::unique_ptr<PthreadData> data(static_cast<PthreadData*>(pthreadDataVoid));
    data->ida->generateTree(data->position, data->milliseconds, data->threadId, data->idaVariant);
    return nullptr;
}
