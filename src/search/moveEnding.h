// How the search of a move ended. Set by the search; reports must use it.
#pragma once

enum class MoveEnding {
    SEARCHED,      // its position was searched, move by move
    REPETITION,    // its position occurred before: a draw
    TABLE,         // the table held its score
    LMF_CUT,       // by the table far below the best move: passed over without a score
    TABLE_LMF_CUT, // both
    QUIET,         // quiescence: a quiet move with its static score
    DEEPEST_PLY,   // quiescence: the same at the deepest ply
    OUT_OF_REACH,  // quiescence: too far below the window, scored by material alone
    STAND_PAT,     // quiescence: the static score already refutes it
    NO_QUISCENCE,  // quiescence is off: the static score
    CLOCK,         // a draw by the half-move clock
    CHECKMATE,     // the other side is mated
    STALEMATE,     // the other side has no move: a draw
};

// Whether lmf passed the move over; it then has no score.
constexpr bool isLmfCut(MoveEnding ending) {
    return ending == MoveEnding::LMF_CUT || ending == MoveEnding::TABLE_LMF_CUT;
}

// Whether the table held the score of the move.
constexpr bool isFromTable(MoveEnding ending) {
    return ending == MoveEnding::TABLE || ending == MoveEnding::TABLE_LMF_CUT;
}
