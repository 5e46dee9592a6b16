// The scale of scores, for the side to move: 1000 is a pawn. Mates lie at the ends of the
// integer range, and a shorter mate is further out.
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

// ---- Scores in words ----

// Writes to standard output: in words if it is a mate of at most 50 plies or so, else as a
// number.
void printEval(int eval);
// The score of a mate in so many moves, negative for the side that is mated.
int mateInEval(int mateIn);
// The moves to mate that printEval() would tell, 0 if it would tell a number.
int mateInFromEval(int eval);
