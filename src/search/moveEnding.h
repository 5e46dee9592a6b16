// Why the search looked at a move no deeper, or that it did. The search itself says it;
// everybody else takes it from there.
#pragma once

enum class MoveEnding {
    SEARCHED,      // its position was searched, move by move
    REPETITION,    // its position stood before: a draw
    TABLE,         // the table had its score
    LMF_CUT,       // the table had it far below the best move: passed over without a score
    TABLE_LMF_CUT, // both of these
    QUIET,         // quiescence: a quiet move, scored as its position stands
    DEEPEST_PLY,   // quiescence: the same at the deepest ply
    OUT_OF_REACH,  // quiescence: too far below the window, scored by material alone
    STAND_PAT,     // quiescence: the other side need not move to refute it
    NO_QUISCENCE,  // quiescence is switched off: scored as its position stands
    CLOCK,         // a draw by the half-move clock
    CHECKMATE,     // the other side is mated
    STALEMATE,     // the other side has no move: a draw
};

// Whether lmf passed the move over, so that its score plays no part.
constexpr bool isLmfCut(MoveEnding ending) {
    return ending == MoveEnding::LMF_CUT || ending == MoveEnding::TABLE_LMF_CUT;
}

// Whether the table had the score of the move.
constexpr bool isFromTable(MoveEnding ending) {
    return ending == MoveEnding::TABLE || ending == MoveEnding::TABLE_LMF_CUT;
}
