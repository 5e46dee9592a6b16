// The scale of scores, for the side to move: 1000 is a pawn. Mate scores are near the ends of the
// integer range; the shorter the mate, the closer to the end.
#pragma once

#include <iosfwd>

inline constexpr int MATED_EVALUATION = -2147483448; // the side to move is checkmated
// The bounds of the full window, which contains every score.
inline constexpr int DEFAULT_FIRST_ALFA = -2147483548;
inline constexpr int DEFAULT_FIRST_BETA = -DEFAULT_FIRST_ALFA;
// A score strictly outside these limits is a mate.
inline constexpr int UPPER_MATE_LIMIT = 2147483298;
inline constexpr int BOTTOM_MATE_LIMIT = -UPPER_MATE_LIMIT;
// The score of a drawn position.
inline constexpr int DRAW_EVALUATION = 0;
inline constexpr int CENTIPAWN = 10;

// isUpperMateLimit(): whether the side that the score belongs to mates. isBottomMateLimit():
// whether that side is mated.
constexpr bool isUpperMateLimit(int eval) {
    return eval > UPPER_MATE_LIMIT;
}
constexpr bool isBottomMateLimit(int eval) {
    return eval < BOTTOM_MATE_LIMIT;
}

// Converts a bound of the window for the next ply: mate scores move one step outward.
constexpr int closerToCheckMate(int eval) {
    if (isUpperMateLimit(eval)) {
        return eval + 1;
    }
    return isBottomMateLimit(eval) ? eval - 1 : eval;
}

// Converts a score for the previous ply: mate scores move one step inward.
constexpr int furtherFromCheckMate(int eval) {
    if (isUpperMateLimit(eval)) {
        return eval - 1;
    }
    return isBottomMateLimit(eval) ? eval + 1 : eval;
}

// Whether a score lies outside all mates, as the ends of the full window do.
constexpr bool isBeyondMates(int eval) {
    return eval < MATED_EVALUATION || eval > -MATED_EVALUATION;
}

// A score in hundredths of a pawn, rounded; halves away from zero.
int toCentipawns(int eval);

// ---- Mates in moves ----

// Whether a score is a mate by either side.
constexpr bool isMate(int eval) {
    return isUpperMateLimit(eval) || isBottomMateLimit(eval);
}
// The number of moves that the mating side needs, negative if the side that the score belongs to is
// mated; 0 if the mate is on the board. Requires isMate(eval).
int movesToMate(int eval);
// The score of a mate in `mateIn` moves; 0 for 0. A negative `mateIn` gives a score below
// MATED_EVALUATION, the lowest score that a search returns. Saturates at the ends of the integer
// range.
int mateInEval(int mateIn);
// The number of moves to mate that printEval() prints, whichever side mates; 0 if it prints a plain
// number.
int mateInFromEval(int eval);

// Prints a score, without a stream to standard output: in words if it is a mate in 25 moves or
// less, else as a number.
void printEval(int eval);
void printEval(std::ostream& stream, int eval);
