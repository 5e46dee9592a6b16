#include "search/treeGenerator.h"

#include "base/loggingService.h"
#include "board/makeMove.h"
#include "board/moveGenerator.h"
#include "search/score.h"
#include "search/statistics.h"

#include <algorithm>

namespace {

void STATISTICS_NEW_RUN() {
    testStatistics.newRun();
}

} // namespace

TreeGenerator::TreeGenerator(const EngineConfig& _config)
    : state(_config), search(std::make_unique<TreeSearch<NoObserver>>(state, NoObserver())),
      book(PolyglotBook::getStandard()) {
    setActualMoveDepth(_config.treeMaxDepth);
    setDefaultFirstAlfaBeta();
}

void TreeGenerator::watchBy(SearchObserver& observer) {
    search = std::make_unique<TreeSearch<ObservedBy>>(state, ObservedBy{&observer});
}

// ---- One pass ----

void TreeGenerator::generateTree(Position& position, Variant& variant) {
    generateTree(position, variant, false);
}

void TreeGenerator::generateTree(Position& position, Variant& variant, bool skipOpening) {
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
    search->generateTreeRek(position, variant, firstAlpha, firstBeta, 0);
    if (isAbandoned()) {
        return;
    }
    // This entry hands the best move to the root of the next pass. After a fail low
    // the line, and so the move, is still that of the pass before.
    if (state.config.useTable) {
        state.table.addTableEntry(position, variant.getFirstMove(), state.actualMoveDepth,
                                  variant.evaluation, firstAlpha, firstBeta);
    }
    if (variant.varLength > 0 && variant.variantMoves[0].isHash) {
        completeVariant(position, variant, state.actualMoveDepth);
    }
}

void TreeGenerator::completeVariant(const Position& position, Variant& variant,
                                    int maxTotalLength) {
    if (state.table.isEmpty()) {
        return;
    }
    Position tempPosition = position;
    DoMoveContext context;
    for (int i = 0; i < variant.varLength; ++i) {
        doMove(tempPosition, variant.get(i).move, context);
    }

    Indexed<int, VariantMove, MAX_VARIANT_MOVES> tempMoves;
    int newMoves = 0;
    while (variant.varLength + newMoves < std::min(maxTotalLength, MAX_VARIANT_MOVES)) {
        MoveArray moves;
        const int count = generateMoves(tempPosition, moves);
        const PolyglotEntry entry(state.table.getAnyMove(tempPosition), 0, 0);
        const int index = entry.getMove(moves.first(count));
        if (index < 0 || !doMove(tempPosition, moves[index], context)) {
            break;
        }
        tempMoves[newMoves] = {moves[index], false, true, false};
        ++newMoves;
    }

    // The line is stored back to front, so what is played last goes to the front.
    auto& stored = variant.variantMoves;
    std::copy_backward(stored.begin(), stored.begin() + variant.varLength,
                       stored.begin() + variant.varLength + newMoves);
    std::reverse_copy(tempMoves.begin(), tempMoves.begin() + newMoves, stored.begin());
    variant.varLength += newMoves;
}

void TreeGenerator::quiscenceSearch(Position& position, int alfa, int beta, Variant& variant) {
    clearTable();
    // If no pass of the tree came before, no run of the counters is open.
    if (testStatistics.getRunPointer() < 0) {
        STATISTICS_NEW_RUN();
    }
    search->quiscenceSearchInner(position, alfa, beta, variant);
}

// ---- The pass to come ----

void TreeGenerator::setActualMoveDepth(int depth) {
    state.actualMoveDepth = std::clamp(depth, 1, MAX_PASSES);
}

void TreeGenerator::setDefaultFirstAlfaBeta() {
    firstAlpha = DEFAULT_FIRST_ALFA;
    firstBeta = DEFAULT_FIRST_BETA;
}

void TreeGenerator::setTimer(Milliseconds milliseconds) {
    timerMilliseconds = milliseconds;
    startClock = clockMilliseconds();
}
