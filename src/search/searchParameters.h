// Every number of the search. Scores are in thousandths of a pawn, depths in plies.
// The numbers of the evaluation and of the move order are in their own files.
#pragma once

#include "base/clock.h"
#include "search/variant.h"

#include <cstdint>

// ---- Depths ----

// The deepest pass; a line has room for as many moves, and the killers for as many plies.
inline constexpr int MAX_PASSES = MAX_VARIANT_MOVES;
// The most plies of quiescence. A larger setting works as this one.
inline constexpr int MAX_QUISCENCE_DEPTH = 30;

// ---- Draws ----

// Half-move clock, in plies, at which both searches call a draw.
inline constexpr int MAX_HALF_MOVE_CLOCK = 100;

// ---- The window ----

// Half the width of the window around the score of a good pass: a little over half a pawn.
inline constexpr int ASPIRATION_WINDOW_HALF = 550;
// lmf: a move is passed over if its value in the table is more than this below the best move.
inline constexpr std::int64_t LMF_MARGIN = 1000;

// ---- The end of a search ----

// The stop flag is polled when the counter of moves passes this value.
inline constexpr int TIME_CHECK_AFTER_NODES = 20000;
// The value of that counter while a pass is being abandoned; counting never reaches it.
inline constexpr int TIME_CHECK_QUIT = 40000;
// Milliseconds past the budget at which the driver gives up.
inline constexpr Milliseconds SAFE_BEFORE_TIMEOUT = 5;
// Another pass starts if the last one took at most this many times the time left.
inline constexpr double SAFE_RATIO = 2.0;
