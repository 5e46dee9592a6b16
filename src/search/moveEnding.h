// How the search of a move ended. The search sets it; reports must use it and not guess.
#pragma once

enum class MoveEnding {
    SEARCHED,      // the position after it was searched
    REPETITION,    // the position after it occurred before: a draw
    TABLE,         // the table held its score
    LMF_CUT,       // the table puts it far below the best move: skipped without a score
    TABLE_LMF_CUT, // both TABLE and LMF_CUT apply
    QUIET,         // quiescence: a quiet move, with its static score
    DEEPEST_PLY,   // quiescence: scored statically because it is at the deepest ply
    OUT_OF_REACH,  // quiescence: too far below the window, scored by material alone
    STAND_PAT,     // quiescence: the static score already refutes it
    NO_QUISCENCE,  // quiescence is off: the static score
    CLOCK,         // a draw by the half-move clock
    CHECKMATE,     // the other side is mated
    STALEMATE,     // the other side has no move: a draw
};

// Whether the move was skipped because of lmf(). It then has no score.
constexpr bool isLmfCut(MoveEnding ending) {
    return ending == MoveEnding::LMF_CUT || ending == MoveEnding::TABLE_LMF_CUT;
}

// Whether the table held the score of the move.
constexpr bool isFromTable(MoveEnding ending) {
    return ending == MoveEnding::TABLE || ending == MoveEnding::TABLE_LMF_CUT;
}
