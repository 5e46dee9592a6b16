// The record that the search hands around: a line of moves with its score.
#pragma once

#include "board/move.h"

#include <iosfwd>
#include <string>

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
// of its child by writing one move after it, and nothing is shifted.
struct Variant {
    int varLength = 0;  // moves in the line, 0 to MAX_VARIANT_MOVES
    int evaluation = 0; // score for the side to move where the line starts
    Indexed<int, VariantMove, MAX_VARIANT_MOVES> variantMoves; // unset from varLength on

    // Leaves the moves unset, as a line is made at every node; `= default` would zero them.
    Variant() {} // NOLINT(modernize-use-equals-default)

    // The i-th move in the order of play; 0 is the one to play. Requires i below
    // varLength.
    VariantMove& get(int i) { return variantMoves[varLength - 1 - i]; }
    const VariantMove& get(int i) const { return variantMoves[varLength - 1 - i]; }

    // The move to play, or null if the line is empty.
    const Move* getFirstMove() const { return varLength > 0 ? &get(0).move : nullptr; }

    // Becomes the line of `child` with `move` to be played before it; the score is
    // left alone. A full line gives up its last move in the order of play. Returns
    // false in that case.
    bool extend(const Variant& child, const VariantMove& move);

    // Becomes the empty line with a score.
    void clear(int score) {
        varLength = 0;
        evaluation = score;
    }
};

// ---- Lines in words. Without a stream they go to standard output ----

// The move, in parentheses if it is a quiescence move, with "(h)" after a table
// move and "(o)" after a book move.
void printVariantMove(std::ostream& stream, const VariantMove& move);
void printVariantMove(const VariantMove& move);

// The moves of a line in the order of play, each with a blank after it. `moves` is
// stored back to front. With a Variant, the score and a line end follow.
void printVariant(std::ostream& stream, const VariantMove* moves, int varLength);
void printVariant(const VariantMove* moves, int varLength);
void printVariant(std::ostream& stream, const Variant& variant);
void printVariant(const Variant& variant);
std::string variantToString(const Variant& variant);
