#include "search/moveOrder.h"

#include "base/loggingService.h"
#include "notation/polyglotEntry.h"

#include <algorithm>
#include <utility>

namespace {

// Drawers of the tree search, tried in this order.
constexpr int TABLE_MOVE_DRAWER = 0;
constexpr int FIRST_KILLER_DRAWER = 6;
constexpr int SECOND_KILLER_DRAWER = 7;
constexpr int QUIET_DRAWER = 8;
constexpr int TREE_DRAWERS = 9;
// By captured piece: queen, rook, bishop, knight, pawn.
constexpr ByType<int> captureDrawers = {QUIET_DRAWER, 5, 2, 4, 3, 1, QUIET_DRAWER};

// Drawers of quiescence: one row per moved piece, one column per captured piece.
constexpr std::int8_t NO_CAPTURE_DRAWER = 9;
constexpr Indexed<int, std::int8_t, 64> pieceEvaluationBuckets = {
    -1, -1, -1, -1, -1, -1, -1, -1, // none
    9,  4,  2,  3,  3,  0,  4,  -1, // pawn
    9,  6,  4,  5,  5,  2,  4,  -1, // rook
    9,  5,  3,  4,  4,  1,  4,  -1, // knight
    9,  5,  3,  4,  4,  1,  4,  -1, // bishop
    9,  8,  6,  7,  7,  4,  4,  -1, // queen
    9,  5,  3,  4,  4,  1,  4,  -1, // king
    -1, -1, -1, -1, -1, -1, -1, -1,
};

// A stable bucket sort of move indices.
template <int DRAWERS> class Drawers {
public:
    Drawers() {
        for (int i = 0; i < DRAWERS; ++i) {
            drawersEnds[i] = i * MAX_MOVES;
        }
    }

    void put(int drawer, int index) {
        drawers[drawersEnds[drawer]++] = static_cast<std::uint16_t>(index);
    }

    void readOut(MoveIndices& indices) const {
        auto next = indices.begin();
        for (int i = 0; i < DRAWERS; ++i) {
            next =
                std::copy(drawers.begin() + i * MAX_MOVES, drawers.begin() + drawersEnds[i], next);
        }
    }

private:
    Indexed<int, std::uint16_t, DRAWERS * MAX_MOVES> drawers;
    Indexed<int, int, DRAWERS> drawersEnds; // next free place of each drawer
};

} // namespace

void MoveOrder::orderMoves(const MoveArray& moves, MoveIndices& moveOrderIndices, int length,
                           int depth, std::int16_t bestMoveShort) const {
    const PolyglotEntry entry(bestMoveShort);
    Drawers<TREE_DRAWERS> drawers;
    for (int i = 0; i < length; ++i) {
        const bool isTableMove = bestMoveShort != 0 && entry.isMove(moves[i]);
        drawers.put(isTableMove ? TABLE_MOVE_DRAWER : getDrawer(moves[i], depth), i);
    }
    drawers.readOut(moveOrderIndices);
}

// The drawer of a move other than the table's.
int MoveOrder::getDrawer(const Move& move, int depth) const {
    if (move.pieceCaptured != NO_PIECE) {
        if (move.pieceCaptured < NO_PIECE || move.pieceCaptured > QUEEN) {
            logger.error("Unexpected default in switch clause");
            return QUIET_DRAWER;
        }
        return captureDrawers[move.pieceCaptured];
    }
    const int moveKillersHash = getMoveKillersIndex(move, depth);
    if (moveKillersHash == actualKillers[depth]) {
        return FIRST_KILLER_DRAWER;
    }
    return moveKillersHash == actualKillers[depth + KILLER_PLIES] ? SECOND_KILLER_DRAWER
                                                                  : QUIET_DRAWER;
}

void MoveOrder::updateKiller(const Move& move, int depth) {
    if (actualKillers[depth] == 0) { // the first cut-off
        std::fill_n(killers.begin() + depth * KILLERS_PER_PLY, KILLERS_PER_PLY, 0);
    }
    const int index = getMoveKillersIndex(move, depth);
    const std::uint32_t count = ++killers[index];
    int& first = actualKillers[depth];
    int& second = actualKillers[depth + KILLER_PLIES];
    if (first == index) {
        return;
    }
    if (count > killers[second]) {
        if (count > killers[first]) {
            second = first;
            first = index;
        } else {
            second = index;
        }
    } else if (count > killers[first]) {
        // The second killer has just overtaken the first.
        std::swap(first, second);
    }
}

void MoveOrder::clearKillersTable() {
    killers[0] = 0; // the count for index 0, which means no killer
    actualKillers.fill(0);
}

int MoveOrder::getMoveKillersIndex(const Move& move, int depth) {
    FieldIndex from = move.from;
    FieldIndex to = move.to;
    if (move.isCastle()) {
        from = move.getCastlingFields().kingFrom;
        to = move.getCastlingFields().kingTo;
    }
    return depth * KILLERS_PER_PLY + from * 128 + to;
}

void orderMoves(const MoveArray& moves, MoveIndices& moveOrderIndices, int length) {
    // An insertion sort, because there are rarely more than a few captures.
    Indexed<int, std::int8_t, MAX_MOVES> drawers;
    for (int i = 0; i < length; ++i) {
        const Move& move = moves[i];
        const std::int8_t drawer =
            move.isCastle() ? NO_CAPTURE_DRAWER
                            : pieceEvaluationBuckets[move.pieceMoved * 8 + move.pieceCaptured];
        int place = i;
        for (; place > 0 && drawers[place - 1] > drawer; --place) {
            drawers[place] = drawers[place - 1];
            moveOrderIndices[place] = moveOrderIndices[place - 1];
        }
        drawers[place] = drawer;
        moveOrderIndices[place] = static_cast<std::uint16_t>(i);
    }
}
