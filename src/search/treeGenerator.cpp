#include "search/treeGenerator.h"

#include "base/loggingService.h"
#include "base/statistics.h"
#include "board/moveGenerator.h"
#include "search/idaVariant.h"

#include <algorithm>

namespace {

// lmf: how far below the best move so far a move must have been seen to be worth.
constexpr std::int64_t LMF_MARGIN = 1000;

// Drawers of the tree's order of moves, tried in this order.
constexpr int TABLE_MOVE_DRAWER = 0;
constexpr int FIRST_KILLER_DRAWER = 6;
constexpr int SECOND_KILLER_DRAWER = 7;
constexpr int QUIET_DRAWER = 8;
constexpr int TREE_DRAWERS = 9;
// By captured piece: queen, rook, bishop, knight, pawn.
constexpr std::array<int, 6> captureDrawers = {QUIET_DRAWER, 5, 2, 4, 3, 1};

// Drawers of the quiescence search by moved and captured piece, best attack first.
constexpr int QUISCENCE_DRAWERS = 10;
constexpr int NO_CAPTURE_DRAWER = 9;
constexpr std::array<std::int8_t, 64> pieceEvaluationBuckets = {
    -1, -1, -1, -1, -1, -1, -1, -1, // none
    9,  4,  2,  3,  3,  0,  4,  -1, // pawn
    9,  6,  4,  5,  5,  2,  4,  -1, // rook
    9,  5,  3,  4,  4,  1,  4,  -1, // knight
    9,  5,  3,  4,  4,  1,  4,  -1, // bishop
    9,  8,  6,  7,  7,  4,  4,  -1, // queen
    9,  5,  3,  4,  4,  1,  4,  -1, // king
    -1, -1, -1, -1, -1, -1, -1, -1,
};

// Sorts the indices of a move list into drawers and reads them out, drawer by drawer.
// Within a drawer they keep their order.
template <int DRAWERS> class Drawers {
public:
    Drawers() {
        for (int i = 0; i < DRAWERS; ++i) {
            drawersEnds[at(i)] = i * MAX_MOVES;
        }
    }

    void put(int drawer, int index) {
        drawers[at(drawersEnds[at(drawer)]++)] = static_cast<std::uint16_t>(index);
    }

    void readOut(int* indices) const {
        for (int i = 0; i < DRAWERS; ++i) {
            indices = std::copy(drawers.begin() + i * MAX_MOVES,
                                drawers.begin() + drawersEnds[at(i)], indices);
        }
    }

private:
    std::array<std::uint16_t, DRAWERS * MAX_MOVES> drawers;
    std::array<int, DRAWERS> drawersEnds; // next free place of each drawer
};

void statsIncrement(int type, int depth, int increment) {
    testStatistics.incrementStatistic(type, depth, increment);
}

void STATISTICS_NEW_RUN() {
    testStatistics.newRun();
}

// The first move of a line, or null if the line is empty.
const Move* firstMoveOf(const Variant& variant) {
    return variant.varLength > 0 ? &variant.get(0).move : nullptr;
}

HashTableEntryState stateOf(int evaluation, int alfa, int beta) {
    if (evaluation >= beta) {
        return FAILHIGH;
    }
    return evaluation > alfa ? NOFAIL : FAILLOW;
}

} // namespace

template <class Observer>
BasicTreeGenerator<Observer>::BasicTreeGenerator(EngineConfig* _config)
    : actualMoveDepth(_config->treeMaxDepth), hashTable(_config->hashTableSize),
      repetitionTable(REPETITION_TABLE_DEFAULT_SIZE), config(_config),
      book(PolyglotBook::getStandard()) {
    usedSlots.reserve(MAX_USED_SLOTS);
    clearKillersTable();
    setDefaultFirstAlfaBeta();
}

// ---- One pass ----

template <class Observer>
void BasicTreeGenerator<Observer>::generateTree(Position& position, Variant& variant) {
    generateTree(position, variant, false);
}

template <class Observer>
void BasicTreeGenerator<Observer>::generateTree(Position& position, Variant& variant,
                                                bool skipOpening) {
    logger.trace("Tree generator start", "treeTag");
    STATISTICS_NEW_RUN();
    if (!skipOpening) {
        const Move openingMove = book.getMove(position);
        if (openingMove.from != PolyglotBook::NO_BOOK_MOVE) {
            variant.clear(DRAW_EVALUATION);
            variant.extend(Variant(), {openingMove, false, false, true});
            return;
        }
    }
    generateTreeRek(position, variant, firstAlpha, firstBeta, 0);
    if (isAbandoned()) {
        return;
    }
    // This entry hands the best move to the root of the next pass. After a fail low
    // the line, and so the move, is still that of the pass before.
    if (config->useTable) {
        addTableEntry(position, firstMoveOf(variant), actualMoveDepth, variant.evaluation,
                      firstAlpha, firstBeta);
    }
    if (variant.varLength > 0 && variant.variantMoves[0].isHash) {
        completeVariant(position, variant, actualMoveDepth);
    }
}

template <class Observer>
void BasicTreeGenerator<Observer>::generateTreeRek(Position& position, Variant& outputVar, int alfa,
                                                   int beta, int depth) {
    // The clock comes before everything else: even a mate is a draw by then.
    if (position.halfMoveClock >= MAX_HALF_MOVE_CLOCK) {
        outputVar.clear(DRAW_EVALUATION);
        return;
    }

    MoveArray outMoves;
    std::array<int, MAX_MOVES> moveOrderIndices;
    const int pseudoLegalMovesN = generateMoves(position, outMoves.data());
    statsIncrement(TestStatistics::ORDINAL_SEARCH_ALL, depth, pseudoLegalMovesN);
    orderMoves(outMoves.data(), moveOrderIndices.data(), pseudoLegalMovesN, depth,
               getBestMoveHint(position));

    const int originalAlfa = alfa;
    int numberOfLegalMoves = 0;
    Variant variantLocal;
    DoMoveContext context;
    for (int i = 0; i < pseudoLegalMovesN; ++i) {
        const Move& m = outMoves[at(moveOrderIndices[at(i)])];
        variantLocal.clear(0);
        context.init();
        if (!doMove(position, m, context)) {
            continue;
        }
        observer.doMove(m);

        // An abandoned pass leaves its moves on the board, here and in every frame above.
        ++searchedTreeNodes;
        if (isTimeUpAfterCounting()) {
            logger.debug("Time up as checked in tree generator at depth ", depth);
            outputVar.clear(beta);
            return;
        }
        statsIncrement(TestStatistics::ORDINAL_SEARCH, depth, 1);
        ++numberOfLegalMoves;

        const MoveOutcome outcome =
            scoreMove(position, variantLocal, alfa, originalAlfa, beta, depth);
        if (isAbandoned()) {
            outputVar.clear(beta);
            return;
        }
        moveUndoneInner(position);
        undoMove(position, m, context);
        observer.explainTreeGenMove(alfa, beta, variantLocal, m, outcome.lmfCut,
                                    outcome.useTableEntryBool);
        if (outcome.lmfCut) {
            continue;
        }

        if (variantLocal.evaluation >= beta) {
            if (m.pieceCaptured == NO_PIECE) {
                updateKiller(m, depth);
            }
            statsIncrement(TestStatistics::ORDINAL_SEARCH_CUTTOFS, depth, 1);
            outputVar.clear(beta);
            return;
        }
        if (variantLocal.evaluation > alfa) {
            alfa = variantLocal.evaluation;
            const bool isWhole =
                outputVar.extend(variantLocal, {m, false, outcome.useTableEntryBool, false});
            if (LOG_ENABLED && !isWhole) {
                logger.error("Hard constraint MAX_VARIANT_MOVES hit!");
            }
        }
    }

    if (numberOfLegalMoves == 0) {
        outputVar.evaluation = isInCheck(position) ? MATED_EVALUATION : DRAW_EVALUATION;
        return;
    }
    outputVar.evaluation = alfa;
}

// Scores the move that has just led to `position`, from the viewpoint of the side that
// made it: `variantLocal` gets the score and the line behind the move.
template <class Observer>
auto BasicTreeGenerator<Observer>::scoreMove(Position& position, Variant& variantLocal, int alfa,
                                             int originalAlfa, int beta, int depth) -> MoveOutcome {
    MoveOutcome outcome;
    // The position stood on the board or on the path before: once is enough.
    if (moveDoneInner(position) > 1) {
        variantLocal.evaluation = DRAW_EVALUATION;
        return outcome;
    }

    const int maxVariantDepth = actualMoveDepth - 1 - depth;
    if (config->useTable) {
        outcome.useTableEntryBool =
            useTableEntry(position, maxVariantDepth, variantLocal.evaluation);
        outcome.lmfCut = lmf(position, alfa, originalAlfa, maxVariantDepth);
    }
    if (outcome.useTableEntryBool || outcome.lmfCut) {
        return outcome;
    }

    const int childAlfa = closerToCheckMate(-beta);
    const int childBeta = closerToCheckMate(-alfa);
    if (maxVariantDepth != 0) {
        generateTreeRek(position, variantLocal, childAlfa, childBeta, depth + 1);
        if (isAbandoned()) {
            logger.trace("Quitting in tree generator at depth ", depth);
            return outcome;
        }
    } else {
        quiscenceSearchInner(position, childAlfa, childBeta, variantLocal);
        if (isAbandoned()) {
            logger.debug("Quitting in tree generator at depth ", depth);
            return outcome;
        }
    }
    variantLocal.evaluation = furtherFromCheckMate(-variantLocal.evaluation);
    if (config->useTable) {
        addTableEntry(position, firstMoveOf(variantLocal), maxVariantDepth, variantLocal.evaluation,
                      alfa, beta);
    }
    return outcome;
}

template <class Observer>
void BasicTreeGenerator<Observer>::completeVariant(const Position& position, Variant& variant,
                                                   int maxTotalLength) {
    if (hashTable.isEmpty()) {
        return;
    }
    Position tempPosition = position;
    DoMoveContext context;
    for (int i = 0; i < variant.varLength; ++i) {
        context.init();
        doMove(tempPosition, variant.get(i).move, context);
    }

    std::array<VariantMove, MAX_VARIANT_MOVES> tempMoves;
    int newMoves = 0;
    while (variant.varLength + newMoves < std::min(maxTotalLength, MAX_VARIANT_MOVES)) {
        MoveArray moves;
        const int count = generateMoves(tempPosition, moves.data());
        const PolyglotEntry entry(hashTable.getEntry(tempPosition.hash).moveRepresentation, 0, 0);
        const int index = entry.getMove(moves.data(), count);
        context.init();
        if (index < 0 || !doMove(tempPosition, moves[at(index)], context)) {
            break;
        }
        tempMoves[at(newMoves)] = {moves[at(index)], false, true, false};
        ++newMoves;
    }

    // The line is stored back to front, so what is played last goes to the front.
    auto& stored = variant.variantMoves;
    std::copy_backward(stored.begin(), stored.begin() + variant.varLength,
                       stored.begin() + variant.varLength + newMoves);
    std::reverse_copy(tempMoves.begin(), tempMoves.begin() + newMoves, stored.begin());
    variant.varLength += newMoves;
}

template <class Observer>
bool BasicTreeGenerator<Observer>::lmf(const Position& position, int alfa, int originalAlfa,
                                       int maxVariantDepth) {
    if (hashTable.isEmpty()) {
        return false;
    }
    bool clash = false;
    const GenericEntry& entry = hashTable.getEntry(position.hash, clash);
    // The two states whose value is an upper limit of what the move is worth.
    const bool isUpperLimit = entry.state == NOFAIL || entry.state == FAILLOW;
    return !clash && isUpperLimit && alfa != originalAlfa &&
           entry.maxVariantDepth + 1 >= maxVariantDepth && entry.evaluation + LMF_MARGIN < alfa;
}

// The table's move for the position, of whatever position and depth, or 0. It only
// decides which move is tried first.
template <class Observer>
std::int16_t BasicTreeGenerator<Observer>::getBestMoveHint(const Position& position) {
    if (hashTable.isEmpty()) {
        return 0;
    }
    const GenericEntry& entry = hashTable.getEntry(position.hash);
    const bool hasMove = entry.state == NOFAIL || entry.state == FAILLOW;
    return hasMove ? entry.moveRepresentation : std::int16_t{0};
}

// ---- Order of moves ----

template <class Observer>
int BasicTreeGenerator<Observer>::getMoveKillersIndex(const Move& move, int depth) {
    FieldIndex from = move.from;
    FieldIndex to = move.to;
    if (move.isCastle()) {
        from = move.getCastlingFields().kingFrom;
        to = move.getCastlingFields().kingTo;
    }
    return depth * KILLERS_PER_PLY + from * 128 + to;
}

template <class Observer>
void BasicTreeGenerator<Observer>::updateKiller(const Move& move, int depth) {
    const int index = getMoveKillersIndex(move, depth);
    const std::uint32_t count = ++killers[at(index)];
    int& first = actualKillers[at(depth)];
    int& second = actualKillers[at(depth + KILLER_PLIES)];
    if (first == index) {
        return;
    }
    if (count > killers[at(second)]) {
        if (count > killers[at(first)]) {
            second = first;
            first = index;
        } else {
            second = index;
        }
    } else if (count > killers[at(first)]) {
        // The second killer has just overtaken the first.
        std::swap(first, second);
    }
}

template <class Observer> void BasicTreeGenerator<Observer>::clearKillersTable() {
    killers.fill(0);
    actualKillers.fill(0);
}

// The drawer of a move that is not the table's, in the tree.
template <class Observer>
int BasicTreeGenerator<Observer>::getDrawer(const Move& move, int depth) const {
    if (move.pieceCaptured != NO_PIECE) {
        if (move.pieceCaptured < NO_PIECE || move.pieceCaptured > QUEEN) {
            logger.error("Unexpected default in switch clause");
            return QUIET_DRAWER;
        }
        return captureDrawers[at(move.pieceCaptured)];
    }
    const int moveKillersHash = getMoveKillersIndex(move, depth);
    if (moveKillersHash == actualKillers[at(depth)]) {
        return FIRST_KILLER_DRAWER;
    }
    return moveKillersHash == actualKillers[at(depth + KILLER_PLIES)] ? SECOND_KILLER_DRAWER
                                                                      : QUIET_DRAWER;
}

template <class Observer>
void BasicTreeGenerator<Observer>::orderMoves(const Move* moves, int* moveOrderIndices, int length,
                                              int depth, std::int16_t bestMoveShort) const {
    const PolyglotEntry entry(bestMoveShort, 0, 0);
    Drawers<TREE_DRAWERS> drawers;
    for (int i = 0; i < length; ++i) {
        const bool isTableMove = bestMoveShort != 0 && entry.isMove(moves[i]);
        drawers.put(isTableMove ? TABLE_MOVE_DRAWER : getDrawer(moves[i], depth), i);
    }
    drawers.readOut(moveOrderIndices);
}

template <class Observer>
void BasicTreeGenerator<Observer>::orderMoves(const Move* moves, int* moveOrderIndices,
                                              int length) const {
    Drawers<QUISCENCE_DRAWERS> drawers;
    for (int i = 0; i < length; ++i) {
        const Move& move = moves[i];
        drawers.put(move.isCastle()
                        ? NO_CAPTURE_DRAWER
                        : pieceEvaluationBuckets[at(move.pieceMoved * 8 + move.pieceCaptured)],
                    i);
    }
    drawers.readOut(moveOrderIndices);
}

// ---- Transposition table ----

template <class Observer>
void BasicTreeGenerator<Observer>::addTableEntry(const Position& position,
                                                 const Move* firstVariantMove, int maxVariantDepth,
                                                 int evaluation, int alfa, int beta) {
    if (hashTable.isEmpty()) {
        return;
    }
    GenericEntry& entry = hashTable.getEntry(position.hash);
    if (entry.state == FREE) {
        noteUsedSlot(entry);
    }
    entry.state = stateOf(evaluation, alfa, beta);
    entry.maxVariantDepth = static_cast<std::int8_t>(maxVariantDepth);
    entry.evaluation = evaluation;
    entry.checkHashProduction = hashTable.getCheckValue(position.hash);
    if (firstVariantMove != nullptr) {
        entry.moveRepresentation = PolyglotEntry::getIntRepresentation(*firstVariantMove);
    }
}

template <class Observer>
bool BasicTreeGenerator<Observer>::useTableEntry(const Position& position, int maxVariantDepth,
                                                 int& evaluation) {
    if (hashTable.isEmpty()) {
        return false;
    }
    bool clash = false;
    const GenericEntry& entry = hashTable.getEntry(position.hash, clash);
    if (clash || entry.state != NOFAIL || entry.maxVariantDepth < maxVariantDepth) {
        return false;
    }
    evaluation = entry.evaluation;
    return true;
}

template <class Observer>
void BasicTreeGenerator<Observer>::noteUsedSlot(const GenericEntry& entry) {
    if (usedSlots.size() < MAX_USED_SLOTS) {
        usedSlots.push_back(static_cast<int>(&entry - &hashTable.getEntry(0)));
    }
}

template <class Observer> void BasicTreeGenerator<Observer>::clearTable() {
    if (usedSlots.size() < MAX_USED_SLOTS) {
        for (const int slot : usedSlots) {
            hashTable.getEntry(slot).state = FREE;
        }
    } else {
        for (int i = 0; i < hashTable.getSize(); ++i) {
            hashTable.getEntry(i).state = FREE;
        }
    }
    usedSlots.clear();
}

template <class Observer> void BasicTreeGenerator<Observer>::applyChanges() {
    int wanted = config->hashTableSize;
    if (hashTable.getSize() == wanted) {
        return;
    }
    logger.info("resizing hash table");
    hashTable.resize(wanted);
    usedSlots.clear();
    // Unless the option has changed meanwhile, tell that there was no memory.
    if (hashTable.getSize() != wanted) {
        config->hashTableSize.compare_exchange_strong(wanted, 0);
    }
}

// ---- Path, counters and the stop flag ----

template <class Observer>
std::uint16_t BasicTreeGenerator<Observer>::moveDoneInner(const Position& newPosition) {
    return repetitionTable.getEntry(newPosition.hash).increaseRepetitions(newPosition.hash);
}

template <class Observer>
void BasicTreeGenerator<Observer>::moveUndoneInner(const Position& oldPosition) {
    repetitionTable.getEntry(oldPosition.hash).decreaseRepetitions(oldPosition.hash);
}

template <class Observer> void BasicTreeGenerator<Observer>::resetSearchedNodes() {
    searchedTreeNodes = 0;
    searchedAllNodes = 0;
    searchedAllNodesAfterTimeControl = 0;
}

// Counts a move of either search, and polls the stop flag when it is due. True if the
// pass is to be abandoned, which the counter then says to every frame above.
template <class Observer> bool BasicTreeGenerator<Observer>::isTimeUpAfterCounting() {
    ++searchedAllNodes;
    ++searchedAllNodesAfterTimeControl;
    if (searchedAllNodesAfterTimeControl <= TIME_CHECK_AFTER_NODES) {
        return false;
    }
    const bool isTimeUp = timerUp();
    searchedAllNodesAfterTimeControl = isTimeUp ? TIME_CHECK_QUIT : 0;
    return isTimeUp;
}

template <class Observer> bool BasicTreeGenerator<Observer>::timerUp() {
    if (idaVariant == nullptr || !idaVariant->isReady()) {
        return false;
    }
    logger.info("Ida variant ready from treeGenartor");
    return true;
}

template <class Observer> void BasicTreeGenerator<Observer>::setTimer(Milliseconds milliseconds) {
    timerMilliseconds = milliseconds;
    startClock = clockMilliseconds();
}

template <class Observer> void BasicTreeGenerator<Observer>::setDefaultFirstAlfaBeta() {
    firstAlpha = DEFAULT_FIRST_ALFA;
    firstBeta = DEFAULT_FIRST_BETA;
}

template class BasicTreeGenerator<NoObserver>;
template class BasicTreeGenerator<ObservedBy>;
