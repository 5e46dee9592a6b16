// Every number of the search, once. Scores are in thousandths of a pawn, depths in plies.
// The numbers of the evaluation and of the order of moves stand in their own files.
#pragma once

#include "base/platform.h"
#include "search/variant.h"

#include <cstdint>

// ---- Depths ----

// The deepest pass: a line holds so many moves, and the killers so many plies.
inline constexpr int MAX_PASSES = MAX_VARIANT_MOVES;
// The most plies of quiescence. A setting beyond it works as this one.
inline constexpr int MAX_QUISCENCE_DEPTH = 30;

// ---- Draws ----

// Half-move clock, in plies, at which both searches call a draw.
inline constexpr int MAX_HALF_MOVE_CLOCK = 100;

// ---- The window ----

// Half the width of the window around the score of a good pass: a little over half a pawn.
inline constexpr int ASPIRATION_WINDOW_HALF = 550;
// lmf: how far below the best move so far a move must have been seen to be worth.
inline constexpr std::int64_t LMF_MARGIN = 1000;

// ---- The end of a search ----

// The stop flag is polled when the counter of moves passes this value.
inline constexpr int TIME_CHECK_AFTER_NODES = 20000;
// That counter while a pass is being abandoned: out of reach of counting.
inline constexpr int TIME_CHECK_QUIT = 40000;
// Milliseconds past the budget at which the driver gives up.
inline constexpr Milliseconds SAFE_BEFORE_TIMEOUT = 5;
// How many times the time left the last pass may have taken for another one to start.
inline constexpr double SAFE_RATIO = 2.0;
