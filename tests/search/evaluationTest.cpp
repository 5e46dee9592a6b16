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
    position.carried.sum = PieceSum(color, type, field);
    position.carried.material[color] = allMaterial;
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

TEST(Evaluation, ScoresForTheSideThatHasJustMoved) {
    struct Case {
        std::string fen;
        int material, positional;
    };
    for (const auto& [fen, material, positional] : std::initializer_list<Case>{
             // position, material, positional
             {START_FEN, 0, 0},
             {"rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1", 0, 32},
             {"4k3/8/4P3/8/8/8/8/4K3 w - - 0 1", -1000, -32},
             {"4k3/8/4P3/8/8/8/8/4K3 b - - 0 1", 1000, 32},
             // Two rooks on the last ranks, with and without the king there; one rook.
             {"1R4k1/R7/8/8/8/8/8/4K3 b - - 0 1", 10000, 12 - 4 + 35},
             {"1R6/R7/6k1/8/8/8/8/4K3 b - - 0 1", 10000, 12 - 12},
             {"7R/k7/8/8/8/8/8/4K3 b - - 0 1", 5000, 12 - 4 + 10},
             // A pair of bishops, and three.
             {"4k3/8/8/8/8/8/8/2B1KB2 b - - 0 1", 6200, 10 + 10 + 10},
             {"4k3/8/8/8/8/8/8/2B1KB1B b - - 0 1", 9300, 10 + 10 + 14 + 10}}) {
        const Position position = positionOf(fen);
        EXPECT_EQ(basicPositionEvaluationByMaterial(position), material) << fen;
        EXPECT_EQ(positionalEval(position, material), positional) << fen;
    }
}

TEST(Evaluation, IsTheSameForBothColours) {
    for (const PerftLine& line : readPerftLines()) {
        EXPECT_EQ(totalEval(positionOf(line.fen), -100000, 100000),
                  totalEval(positionOf(mirrorFen(line.fen)), -100000, 100000))
            << line.fen;
    }
}

TEST(Evaluation, LazyExitKeepsItsMarginStrictly) {
    const Position position = positionOf("4k3/8/4P3/8/8/8/8/4K3 b - - 0 1");
    EXPECT_EQ(totalEval(position, 1501, 100000), 1000);
    EXPECT_EQ(totalEval(position, 1500, 100000), 1032);
    EXPECT_EQ(totalEval(position, -100000, 499), 1000);
    EXPECT_EQ(totalEval(position, -100000, 500), 1032);
}

} // namespace
