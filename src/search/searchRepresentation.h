// The records that the search hands around: a line of moves with its score, and the
// scale that keeps mates apart from ordinary scores.
#pragma once

#include "board/boardRepresentation.h"

#include <array>

// Most moves of a line, and the deepest pass of a search.
inline constexpr int MAX_VARIANT_MOVES = 20;

// One move of a line.
struct VariantMove {
    Move move;
    bool isQuiscence; // the quiescence search added it
    bool isHash;      // the table answered for it, or the line was completed with it
    bool isOpening;   // it comes from the opening book
};

// A line with its score. It is stored back to front: variantMoves[varLength - 1] is
// the move to play, variantMoves[0] the last of the line. So a node extends the line
// of its child by writing one move behind it, and nothing is shifted.
struct Variant {
    int varLength = 0;  // moves in the line, 0 to MAX_VARIANT_MOVES
    int evaluation = 0; // score for the side to move where the line starts
    std::array<VariantMove, MAX_VARIANT_MOVES> variantMoves; // unset from varLength on

    // Leaves the moves unset, as a line is made at every node; `= default` would zero them.
    Variant() {} // NOLINT(modernize-use-equals-default)

    // The i-th move in the order of play; 0 is the one to play. Requires i below
    // varLength.
    VariantMove& get(int i) { return variantMoves[at(varLength - 1 - i)]; }
    const VariantMove& get(int i) const { return variantMoves[at(varLength - 1 - i)]; }

    // Becomes the line of `child` with `move` to be played before it; the score is
    // left alone. A full line gives up its last move in the order of play. Returns
    // false in that case.
    bool extend(const Variant& child, const VariantMove& move);

    // Becomes the empty line with a score.
    void clear(int score);
};

// The scale of scores, for the side to move: 1000 is a pawn. Mates lie at the ends
// of the integer range, and a shorter mate is further out.
inline constexpr int MATED_EVALUATION = -2147483448; // the side to move is checkmated
// The full window: every mate score lies inside it.
inline constexpr int DEFAULT_FIRST_ALFA = -2147483548;
inline constexpr int DEFAULT_FIRST_BETA = -DEFAULT_FIRST_ALFA;
// A score strictly outside these limits is a mate.
inline constexpr int UPPER_MATE_LIMIT = 2147483298;
inline constexpr int BOTTOM_MATE_LIMIT = -UPPER_MATE_LIMIT;
// The score of a drawn position.
inline constexpr int DRAW_EVALUATION = 0;

// Whether the score is a mate for the side that it belongs to, or against it.
constexpr bool isUpperMateLimit(int eval) {
    return eval > UPPER_MATE_LIMIT;
}
constexpr bool isBottomMateLimit(int eval) {
    return eval < BOTTOM_MATE_LIMIT;
}

// A bound of the window on its way one ply down: mates move one step outward.
constexpr int closerToCheckMate(int hodnoceni) {
    if (isUpperMateLimit(hodnoceni)) {
        return hodnoceni + 1;
    }
    return isBottomMateLimit(hodnoceni) ? hodnoceni - 1 : hodnoceni;
}

// A score on its way one ply up: mates move one step inward.
constexpr int furtherFromCheckMate(int hodnoceni) {
    if (isUpperMateLimit(hodnoceni)) {
        return hodnoceni - 1;
    }
    return isBottomMateLimit(hodnoceni) ? hodnoceni + 1 : hodnoceni;
}
