// The scale of scores, for the side to move: 1000 is a pawn. Mate scores are near the ends of the
// integer range; the shorter the mate, the closer to the end.
#pragma once

inline constexpr int MATED_EVALUATION = -2147483448; // the side to move is checkmated
// The full window: every mate score lies inside it.
inline constexpr int DEFAULT_FIRST_ALFA = -2147483548;
inline constexpr int DEFAULT_FIRST_BETA = -DEFAULT_FIRST_ALFA;
// A score strictly outside these limits is a mate.
inline constexpr int UPPER_MATE_LIMIT = 2147483298;
inline constexpr int BOTTOM_MATE_LIMIT = -UPPER_MATE_LIMIT;
// The score of a drawn position.
inline constexpr int DRAW_EVALUATION = 0;

// Whether the score is a mate by the side that it belongs to, or against it.
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

// ---- Mates in moves ----

// Whether a score is a mate, given or suffered.
constexpr bool isMate(int eval) {
    return isUpperMateLimit(eval) || isBottomMateLimit(eval);
}
// The moves of the mating side up to the mate, negative if the side that the score belongs to is
// mated; 0 if the mate is on the board. Requires isMate(eval).
int movesToMate(int eval);
// The score of a mate in `mateIn` moves, negative if the side is mated; 0 for 0. Saturates at the
// ends of the integer range.
int mateInEval(int mateIn);
// The moves to mate that printEval() prints, 0 if it prints a number.
int mateInFromEval(int eval);

// Prints a score to standard output: in words if it is a mate in 25 moves or less, else as a
// number.
void printEval(int eval);
