// The constants of the search. Scores are in thousandths of a pawn, depths in plies. The constants
// of the evaluation and of the move order are in their own files.
#pragma once

#include "base/clock.h"
#include "search/variant.h"

#include <cstdint>

// ---- Depths ----

// The deepest pass. A line has room for this many moves, and the killers for this many plies.
inline constexpr int MAX_PASSES = MAX_VARIANT_MOVES;
// Maximum plies of quiescence. A larger setting works like this one.
inline constexpr int MAX_QUISCENCE_DEPTH = 30;

// ---- Draws ----

// Half-move clock, in plies, at which both searches call a draw.
inline constexpr int MAX_HALF_MOVE_CLOCK = 100;

// ---- The window ----

// Half the width of the window around the score of the last good pass.
inline constexpr int ASPIRATION_WINDOW_HALF = 550;
// TranspositionTable::lmf() skips a move whose table value is more than this below the best score.
inline constexpr std::int64_t LMF_MARGIN = 1000;

// ---- The end of a search ----

// The stop flag is polled when the number of moves since the last poll exceeds this.
inline constexpr int TIME_CHECK_AFTER_NODES = 20000;
// The value of that counter while a pass is being abandoned; counting never reaches it.
inline constexpr int TIME_CHECK_QUIT = 40000;
// Deepening stops after a pass that ends at least this many milliseconds past the budget.
inline constexpr Milliseconds SAFE_BEFORE_TIMEOUT = 5;
// A timed search reports root moves when it has run for this many milliseconds.
inline constexpr Milliseconds TIME_TO_FIRST_ROOT_MOVE = 1000;
// Another pass starts only if the last good one took at most this many times the time left.
inline constexpr double SAFE_RATIO = 2.0;
