// One node of the tree search, while its moves are tried.
#pragma once

#include "board/checkersAndPins.h"
#include "search/variant.h"

struct TreeNode {
    TreeNode(Position& _position, Variant& _variant, int _alfa, int _beta, int _depth,
             int _maxVariantDepth)
        : position(_position), variant(_variant), alfa(_alfa), originalAlfa(_alfa), beta(_beta),
          depth(_depth), maxVariantDepth(_maxVariantDepth), pins(_position) {}

    Position& position;
    Variant& variant; // gets the line
    int alfa;         // the best score so far
    const int originalAlfa;
    const int beta;
    const int depth;            // plies below the root
    const int maxVariantDepth;  // plies that the tree search goes on after a move
    const CheckersAndPins pins; // which moves are legal
    int numberOfLegalMoves = 0;
    Variant localVariant; // score of the move tried last, and the line after it
};
