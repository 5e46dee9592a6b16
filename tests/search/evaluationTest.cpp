#include "search/evaluation.h"

#include "board/setUp.h"
#include "search/quietBounds.h"
#include "testing/boardSupport.h"
#include "testing/dice.h"

#include <gtest/gtest.h>

namespace {

constexpr int OPENING_MATERIAL = 26300;
constexpr int END_GAME_MATERIAL = 26200;

// The positional score of a lone piece for its own side.
int scoreOfPiece(PieceType type, Color color, FieldIndex field, int allMaterial) {
    Position position;
    resetPosition(position);
    position.incremental.sum = PieceSum(color, type, field);
    position.incremental.material[color] = allMaterial;
    position.colorToMove = opposite(color);
    return positionalEval(position, 0);
}

struct TableSums {
    PieceType type;
    int allMaterial;
    int sum, weightedSum, weightedSquares; // from a1 to h8, with the weights 1 to 64
};

TEST(Evaluation, TablesHoldTheirValuesForBothColours) {
    for (const TableSums& table :
         std::initializer_list<TableSums>{// piece, material, sum, weighted sum, weighted squares
                                          {PAWN, OPENING_MATERIAL, 709, 29213, 712179},
                                          {PAWN, END_GAME_MATERIAL, 709, 29213, 712179},
                                          {KNIGHT, 0, 1213, 45283, 1177031},
                                          {BISHOP, 0, 1163, 38535, 793811},
                                          {KING, OPENING_MATERIAL, -926, -30060, 556560},
                                          {KING, END_GAME_MATERIAL, 912, 32904, 572824},
                                          {QUEEN, 0, 0, 0, 0}}) {
        SCOPED_TRACE(int{table.type});
        int sum = 0;
        int weightedSum = 0;
        int weightedSquares = 0;
        for (int i = 0; i < 64; ++i) {
            const FieldIndex field = fieldOf(i % 8, i / 8);
            const FieldIndex mirror = fieldOf(i % 8, 7 - i / 8);
            const int score = scoreOfPiece(table.type, WHITE, field, table.allMaterial);
            EXPECT_EQ(scoreOfPiece(table.type, BLACK, mirror, table.allMaterial), score) << i;
            sum += score;
            weightedSum += (i + 1) * score;
            weightedSquares += (i + 1) * score * score;
        }
        EXPECT_EQ(sum, table.sum);
        EXPECT_EQ(weightedSum, table.weightedSum);
        EXPECT_EQ(weightedSquares, table.weightedSquares);
    }
}

// The quiescence search skips quiet moves by these bounds.
TEST(QuietBounds, HoldForTheMovesOfRandomGames) {
    Dice dice(1);
    int moves = 0;
    int reached = 0; // moves that gain just what the bound says
    for (const std::string fen : {START_FEN, "r3k2r/2R5/3nb3/5q2/2BN4/4Q3/1r5P/R3K2R w KQkq - 0 1",
                                  "8/1k4R1/R7/2b5/5B2/6r1/r4K2/8 b - - 0 1",
                                  "4k3/R2R4/2p1b3/3p4/P2P4/4B3/r2r4/4K3 w - - 0 1",
                                  "1r1r4/R1R5/4k3/2nPp3/3pN3/4K3/r1r5/1R1R4 b - - 0 1"}) {
        for (int game = 0; game < 20; ++game) {
            Position position = positionOf(fen);
            for (int ply = 0; ply < 60; ++ply) {
                const std::vector<Move> legal = legalMovesOf(position);
                if (legal.empty()) {
                    break;
                }
                const Color side = position.colorToMove;
                const int allMaterial = totalMaterial(position);
                const QuietBounds& bounds = getQuietBounds(side, isEndGame(allMaterial));
                const auto scoreOf = [&](PieceSum sum) {
                    return staticScore(sum, 0, allMaterial, side);
                };
                for (const Move& move : legal) {
                    if (move.isCastle() || move.pieceCaptured != NO_PIECE ||
                        move.promotionPieceType != NO_PIECE) {
                        continue;
                    }
                    const int gain = scoreOf(positionAfter(position, move).incremental.sum) -
                                     scoreOf(position.incremental.sum);
                    const int bound = bounds[move.pieceMoved][move.from];
                    ASSERT_LE(gain, bound)
                        << LongAlgebraicMove(move).toString() << " in " << getFen(position);
                    ASSERT_TRUE(move.pieceMoved != PAWN || gain <= PAWN_STEP_BOUND);
                    ++moves;
                    reached += gain == bound ? 1 : 0;
                }
                position = positionAfter(position, dice.pickFrom(legal));
            }
        }
    }
    EXPECT_GT(moves, 50000);
    EXPECT_GT(reached, 1000);
}

} // namespace
