// The review of a game: what each move cost, and what was wrong with the costliest ones.
#pragma once

#include "explain/lineAnswer.h"
#include "notation/pgn.h"
#include "search/engineParameters.h"

#include <cstdint>
#include <functional>
#include <vector>

// A move of a reviewed game. Scores are for the side that made it.
struct ReviewedMove {
    int ply; // from 0
    Move move;
    int before;             // of the position before it, which is the score of the best move
    int after;              // of the position after it
    std::vector<Move> best; // the search's line in the position before it
    int depth;              // of that search, in plies

    // What the move cost, in thousandths of a pawn, 0 or more. Mates and other scores beyond ten
    // pawns count as ten pawns. The search's own move costs nothing.
    int getCost() const;
};

// One of the costliest moves, with the answer about the line that consists of it.
struct CostlyMove {
    int ply; // from 0
    Answer answer;
};

struct Review {
    std::vector<ReviewedMove> moves;
    std::vector<CostlyMove> costliest; // the costliest first; all cost half a pawn or more
};

// Searches each position of a game with `nodes` moves, then explains the costliest moves. `onMove`
// is called after each move of the game. The review ends early if the flag of `slot`, which may be
// null, is raised: it then lacks what is not finished.
Review reviewGame(const EngineConfig& config, const PgnGame& game, std::int64_t nodes,
                  const std::function<void(const ReviewedMove&)>& onMove,
                  IdaVariant* slot = nullptr);

// The game with a comment after each reviewed move: the score for White in pawns, and of the
// costliest moves what was better, why, and the refutation. Replaces the comments and glyphs that
// it had.
PgnGame annotate(const PgnGame& game, const Review& review);
