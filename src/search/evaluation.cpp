#include "search/evaluation.h"

#include "board/boardRepresentation.h"

namespace {

// ---- Piece-square tables, in thousandths of a pawn ----

// One value a field for White, rank 1 first, file a to h.
using WhiteHalf = std::array<std::int16_t, 64>;
// By field of the mailbox; border fields hold 0 and are never read.
using FieldTable = std::array<std::int16_t, BOARD_SIZE>;
// By colour and field. Black's half is White's, mirrored by rank and negated, so that
// every value counts for a sum that is good for White.
using ColorTable = std::array<FieldTable, 2>;

constexpr FieldTable onMailbox(const WhiteHalf& half) {
    FieldTable table{};
    for (int row = 0; row < 8; ++row) {
        for (int file = 0; file < 8; ++file) {
            table[at(Position::getIndexFrom07Notation(file, row))] = half[at(row * 8 + file)];
        }
    }
    return table;
}

constexpr ColorTable forBothColors(const WhiteHalf& half) {
    ColorTable table{};
    table[WHITE] = onMailbox(half);
    for (int row = 0; row < 8; ++row) {
        for (int file = 0; file < 8; ++file) {
            const auto mirrored = at(Position::getIndexFrom07Notation(file, 7 - row));
            table[BLACK][mirrored] = static_cast<std::int16_t>(-half[at(row * 8 + file)]);
        }
    }
    return table;
}

// clang-format off
// Pawns, in every phase of the game.
constexpr ColorTable pawnsOpeningMiddleGame = forBothColors({
      0,   0,   0,   0,   0,   0,   0,   0,
      4,   4, -10, -10, -10,   4,   4,   4,
      7,   5,   9,   9,   9,   5,   5,   7,
     11,  14,  17,  22,  22,  10,   8,   9,
     14,  17,  19,  27,  27,  24,  10,  13,
     17,  20,  22,  32,  32,  27,  13,  20,
     20,  23,  25,  38,  38,  33,  16,  23,
      0,   0,   0,   0,   0,   0,   0,   0,
});

// Knights.
constexpr ColorTable knightsPositionTable = forBothColors({
      0,   4,   8,  10,  10,   8,   4,   0,
      4,   8,  14,  16,  16,  14,   8,   4,
      8,  16,  24,  28,  28,  24,  16,   8,
     10,  20,  28,  32,  32,  30,  20,  10,
     10,  20,  31,  38,  38,  34,  24,  14,
     10,  20,  32,  36,  36,  34,  24,  14,
     10,  20,  28,  32,  32,  30,  20,  10,
      8,  16,  24,  28,  28,  26,  16,   8,
});

// Bishops.
constexpr ColorTable bishopPosition = forBothColors({
     14,  10,  10,  10,  10,  10,  10,  14,
     14,  24,  18,  18,  22,  18,  23,  14,
     18,  18,  18,  22,  22,  22,  14,  18,
     14,  18,  24,  24,  24,  24,  18,  18,
     14,  18,  20,  30,  30,  26,  24,  14,
     18,  14,  26,  22,  26,  28,  20,  24,
     12,  28,  20,  22,  22,  22,  28,  12,
     14,  10,  10,  10,  10,  10,  10,  14,
});

// Kings until the end game. Black subtracts the value of the same field, which equals
// the mirrored one.
constexpr FieldTable kingOpening = onMailbox({
     -6,  -2,  -5, -10, -10,  -6,   0,  -4,
     -7, -12, -10, -14, -14, -10, -12,  -5,
    -14, -18, -22, -22, -22, -22, -18, -14,
    -18, -22, -26, -26, -26, -26, -22, -18,
    -18, -22, -26, -26, -26, -26, -22, -18,
    -14, -18, -22, -22, -22, -22, -18, -14,
     -7, -12, -10, -14, -14, -10, -12,  -5,
     -6,  -2,  -5, -10, -10,  -6,   0,  -4,
});

// Kings in the end game.
constexpr ColorTable kingEndGame = forBothColors({
      0,   4,   8,  12,  12,   8,   4,   0,
      4,   8,  12,  16,  16,  12,   8,   4,
      8,  12,  16,  20,  20,  16,  12,   8,
     12,  16,  20,  24,  24,  20,  16,  12,
     12,  16,  20,  24,  24,  20,  16,  12,
     11,  15,  19,  23,  23,  19,  15,  11,
     10,  14,  18,  22,  22,  18,  14,  10,
      9,  13,  17,  21,  21,  17,  13,   9,
});
// clang-format on

// ---- Terms ----

constexpr int LAZY_MARGIN = 500;             // beyond it material alone decides
constexpr int END_GAME_MAX_MATERIAL = 26200; // of both sides together
constexpr int BISHOP_PAIR_BONUS = 10;
constexpr int ADVANCED_ROOK_BONUS = 10;
constexpr int SECOND_ADVANCED_ROOK_BONUS = 25;

// Whether a field lies on the last two ranks, as seen by a colour.
bool isOnLastTwoRanks(FieldIndex field, Color color) {
    return color == WHITE ? field > 80 : field < 39;
}

// What the walk over the piece list finds of one side.
struct SideSummary {
    int numberOfBishops = 0;
    int rooksBeyond7Row = 0; // rooks on their last two ranks
    FieldIndex kingIndex = 0;
};

// The bonus of a side for its bishop pair and for rooks that shut in the enemy king.
int bonusOf(const SideSummary& own, const SideSummary& enemy, Color color) {
    int bonus = own.numberOfBishops > 1 ? BISHOP_PAIR_BONUS : 0;
    if (own.rooksBeyond7Row >= 1 && isOnLastTwoRanks(enemy.kingIndex, color)) {
        bonus += ADVANCED_ROOK_BONUS;
        bonus += own.rooksBeyond7Row > 1 ? SECOND_ADVANCED_ROOK_BONUS : 0;
    }
    return bonus;
}

// The piece-square value of one piece, positive if good for White. Notes in
// `summary` what the bonuses need.
int evaluatePiece(const Piece& piece, Color color, bool isEndGame, SideSummary& summary) {
    const auto field = at(piece.boardPosition);
    switch (piece.pieceType) {
    case PAWN:
        return pawnsOpeningMiddleGame[at(color)][field];
    case ROOK:
        summary.rooksBeyond7Row += isOnLastTwoRanks(piece.boardPosition, color) ? 1 : 0;
        return 0;
    case KNIGHT:
        return knightsPositionTable[at(color)][field];
    case BISHOP:
        ++summary.numberOfBishops;
        return bishopPosition[at(color)][field];
    case KING:
        summary.kingIndex = piece.boardPosition;
        if (isEndGame) {
            return kingEndGame[at(color)][field];
        }
        return color == WHITE ? kingOpening[field] : -kingOpening[field];
    default:
        return 0;
    }
}

// A sum that is good for White, turned to the side that has just moved.
int forLastMover(int whiteSum, const Position& position) {
    return position.colorToMove == WHITE ? -whiteSum : whiteSum;
}

} // namespace

int basicPositionEvaluationByMaterial(const Position& position) {
    return forLastMover(position.material[WHITE] - position.material[BLACK], position);
}

int positionalEval(const Position& position, int /*materialBalance*/) {
    const bool isEndGame = totalMaterial(position) <= END_GAME_MAX_MATERIAL;
    std::array<SideSummary, 2> sides;
    int eval = 0;
    for (const Color color : {WHITE, BLACK}) {
        for (int i = PiecesStart[at(color)]; i < PiecesEnd[at(color)]; ++i) {
            eval += evaluatePiece(position.pieces[at(i)], color, isEndGame, sides[at(color)]);
        }
    }
    eval += bonusOf(sides[WHITE], sides[BLACK], WHITE);
    eval -= bonusOf(sides[BLACK], sides[WHITE], BLACK);
    return forLastMover(eval, position);
}

int totalEval(const Position& position, int alpha, int beta) {
    const int material = basicPositionEvaluationByMaterial(position);
    if (material + LAZY_MARGIN < alpha || material - LAZY_MARGIN > beta) {
        return material;
    }
    return material + positionalEval(position, material);
}
