#include "search/evaluation.h"

#include "board/pieceSquareTables.h"
#include "board/position.h"
#include "board/setUp.h"

namespace {

constexpr int LAZY_MARGIN = 500;             // beyond it material alone decides
constexpr int END_GAME_MAX_MATERIAL = 26200; // of both sides together
constexpr int BISHOP_PAIR_BONUS = 10;
constexpr int ADVANCED_ROOK_BONUS = 10;
constexpr int SECOND_ADVANCED_ROOK_BONUS = 25;

// Whether a field lies on the last two ranks, as seen by a colour.
bool isOnLastTwoRanks(FieldIndex field, Color color) {
    return color == WHITE ? field >= A7 : field <= H2;
}

// What the walk over the piece list finds of one side.
struct SideSummary {
    int numberOfBishops = 0;
    int rooksBeyond7Row = 0; // rooks on their last two ranks
    FieldIndex kingIndex = NO_FIELD;
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
    const FieldIndex field = piece.boardPosition;
    switch (piece.pieceType) {
    case PAWN:
        return pawnsOpeningMiddleGame[color][field];
    case ROOK:
        summary.rooksBeyond7Row += isOnLastTwoRanks(field, color) ? 1 : 0;
        return 0;
    case KNIGHT:
        return knightsPositionTable[color][field];
    case BISHOP:
        ++summary.numberOfBishops;
        return bishopPosition[color][field];
    case KING:
        summary.kingIndex = piece.boardPosition;
        if (isEndGame) {
            return kingEndGame[color][field];
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
    return forLastMover(position.carried.material[WHITE] - position.carried.material[BLACK],
                        position);
}

int positionalEval(const Position& position, int /*materialBalance*/) {
    const bool isEndGame = totalMaterial(position) <= END_GAME_MAX_MATERIAL;
    ByColor<SideSummary> sides;
    int eval = 0;
    for (const Color color : COLORS) {
        for (int i = PiecesStart[color]; i < PiecesEnd[color]; ++i) {
            eval += evaluatePiece(position.pieces[i], color, isEndGame, sides[color]);
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
