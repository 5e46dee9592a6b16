// Lines of moves as text.
#include "search/variant.h"

#include "testing/printed.h"

#include <gtest/gtest.h>

namespace {

constexpr Move DOUBLE_STEP = {E2, E4, PAWN, NO_PIECE, ORDINARY_MOVE, NO_PIECE};
constexpr Move CASTLING = {NO_FIELD, NO_FIELD, NO_PIECE, NO_PIECE, BLACK_QUEEN_SIDE, NO_PIECE};

TEST(Variant, IsPrintedInTheOrderOfPlay) {
    Variant line;
    line.varLength = 3;
    line.evaluation = -42;
    line.get(0) = {DOUBLE_STEP, false, false, true};
    line.get(1) = {CASTLING, false, true, false};
    line.get(2) = {DOUBLE_STEP, true, true, false};
    const std::string text = "pE2-E4(o) 0-0-0(h) (pE2-E4(h)) Evaluation : -42\n";
    EXPECT_EQ(variantToString(line), text);
    EXPECT_EQ(printed([&] { printVariant(line); }), text);
    EXPECT_EQ(printed([&] { printVariant(line.variantMoves.begin(), 2); }),
              "0-0-0(h) (pE2-E4(h)) ");
    EXPECT_EQ(printed([&] { printVariantMove(line.get(0)); }), "pE2-E4(o)");
}

} // namespace
