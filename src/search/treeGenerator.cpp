#include "search/treeGenerator.h"

#include "base/loggingService.h"
#include "board/makeMove.h"
#include "board/moveGenerator.h"
#include "search/score.h"

#include <algorithm>

TreeGenerator::TreeGenerator(const EngineConfig& _config)
    : state(_config), search(std::make_unique<TreeSearch<NoObserver>>(state, NoObserver())),
      book(&PolyglotBook::getStandard()) {
}

void TreeGenerator::watchBy(SearchObserver& observer) {
    statistics = nullptr;
    search = std::make_unique<TreeSearch<ObservedBy>>(state, ObservedBy{&observer});
}

void TreeGenerator::countIn(TestStatistics& _statistics) {
    statistics = &_statistics;
    search = std::make_unique<TreeSearch<CountedBy>>(state, CountedBy{{}, statistics});
}

void TreeGenerator::generateTree(Position& position, Variant& variant, int depth,
                                 const RootWindow& window, bool skipOpening) {
    logger.trace("Tree generator start", "treeTag");
    if (statistics != nullptr) {
        statistics->newRun();
    }
    if (!skipOpening) {
        const Move openingMove = book->getMove(position);
        if (openingMove.from != PolyglotBook::NO_BOOK_MOVE) {
            variant.clear(DRAW_EVALUATION);
            variant.extend(Variant(), {openingMove, false, false, true});
            return;
        }
    }
    state.actualMoveDepth = std::clamp(depth, 1, MAX_PASSES);
    search->generateTreeRek(position, variant, window.firstAlpha, window.firstBeta, 0);
    state.root = nullptr;
    if (state.nodes.isAbandoned()) {
        return;
    }
    // The root of the next pass takes its first move from this entry. After a fail low, that is
    // still the move of the previous pass.
    if (state.config.useTable) {
        state.table.addTableEntry(position, variant.getFirstMove(), state.actualMoveDepth,
                                  variant.evaluation, window.firstAlpha, window.firstBeta);
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
        const PolyglotEntry entry(state.table.getAnyMove(tempPosition));
        const int index = entry.getMove(moves.first(count));
        if (index < 0 || !doMove(tempPosition, moves[index], context)) {
            break;
        }
        tempMoves[newMoves] = {moves[index], false, true, false};
        ++newMoves;
    }

    // The line is stored back to front, so the new moves go to the front.
    auto& stored = variant.variantMoves;
    std::copy_backward(stored.begin(), stored.begin() + variant.varLength,
                       stored.begin() + variant.varLength + newMoves);
    std::reverse_copy(tempMoves.begin(), tempMoves.begin() + newMoves, stored.begin());
    variant.varLength += newMoves;
}

void TreeGenerator::quiscenceSearch(Position& position, int alfa, int beta, Variant& variant) {
    state.table.clearTable();
    // Without a pass of the tree before, no run of the counters is open.
    if (statistics != nullptr && statistics->getRunPointer() < 0) {
        statistics->newRun();
    }
    search->quiscenceSearchInner(position, alfa, beta, variant);
}
