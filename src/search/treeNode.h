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
    Variant& variant;           // receives the line
    int alfa;                   // lower bound of the window; rises to the best score
    const int originalAlfa;     // alfa before the first move
    const int beta;             // upper bound of the window
    const int depth;            // plies from the root
    const int maxVariantDepth;  // plies of tree search after a move; 0 if quiescence follows
    const CheckersAndPins pins; // for testing which moves are legal
    int numberOfLegalMoves = 0; // tried so far
    const Move* move = nullptr; // tried last
    Variant localVariant;       // score of the move tried last, and the line after it
};
