#include "search/evaluation.h"

#include "board/setUp.h"

#include "testing/boardSupport.h"

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
            const FieldIndex field = Position::getIndexFrom07Notation(i % 8, i / 8);
            const FieldIndex mirror = Position::getIndexFrom07Notation(i % 8, 7 - i / 8);
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

} // namespace
