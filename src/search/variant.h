// A line of moves with its score.
#pragma once

#include "board/move.h"

#include <iosfwd>
#include <string>

// Room for moves in a line.
inline constexpr int MAX_VARIANT_MOVES = 20;

// One move of a line.
struct VariantMove {
    Move move;
    bool isQuiscence; // the quiescence search added it
    bool isHash;      // its score is from the table, or completeVariant() took it from there
    bool isOpening;   // it comes from the opening book
};

// A line with its score, stored back to front: variantMoves[varLength - 1] is the move to play,
// variantMoves[0] the last move. So a node extends the line of its child by appending its own move.
struct Variant {
    int varLength = 0;  // moves in the line, 0 to MAX_VARIANT_MOVES
    int evaluation = 0; // score for the side to move where the line starts
    Indexed<int, VariantMove, MAX_VARIANT_MOVES> variantMoves; // unset from varLength on

    // Leaves the moves unset, because each node constructs a line. With `= default`, Variant()
    // would zero them.
    Variant() {} // NOLINT(modernize-use-equals-default)

    // The i-th move in the order of play; 0 is the one to play. Requires i below
    // varLength.
    VariantMove& get(int i) { return variantMoves[varLength - 1 - i]; }
    const VariantMove& get(int i) const { return variantMoves[varLength - 1 - i]; }

    // The move to play, or null if the line is empty.
    const Move* getFirstMove() const { return varLength > 0 ? &get(0).move : nullptr; }

    // Becomes `move` followed by the line of `child`; the score stays. If the line of `child` is
    // full, drops its last move in the order of play and returns false.
    bool extend(const Variant& child, const VariantMove& move);

    // Becomes the empty line with `score`.
    void clear(int score) {
        varLength = 0;
        evaluation = score;
    }
};

// ---- Text; without a stream it goes to standard output ----

// Prints a move, in parentheses if it is a quiescence move, with "(h)" after a table move and
// "(o)" after a book move.
void printVariantMove(std::ostream& stream, const VariantMove& move);
void printVariantMove(const VariantMove& move);

// Prints the moves of a line in the order of play, each followed by a blank. `moves` is stored
// back to front. With a Variant, the score and a line end follow.
void printVariant(std::ostream& stream, const VariantMove* moves, int varLength);
void printVariant(const VariantMove* moves, int varLength);
void printVariant(std::ostream& stream, const Variant& variant);
void printVariant(const Variant& variant);
std::string variantToString(const Variant& variant);
