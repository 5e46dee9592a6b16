// The engine as a partner: its moves, its advice, and why it plays as it does.
#pragma once

#include "engine/engine.h"
#include "notation/numberedGame.h"
#include "search/engineParameters.h"
#include "search/searchLimits.h"
#include "uci/levels.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

struct Strength {
    // For a move. If not given, it is a second, or without limit if the nodes are limited.
    std::optional<Milliseconds> time = {};
    int depth = MAX_PASSES;       // plies, at most
    const Level* level = nullptr; // null for none
};

// What the engine thinks of a position.
struct Thought {
    std::vector<Move> line; // that it expects, its own move first; empty if there is none
    int score;              // thousandths of a pawn for the side to move
    int depth;              // plies
    bool isFromBook;        // then score and depth mean nothing
};

class Opponent {
public:
    explicit Opponent(const Strength& _strength);

    // How strongly it plays from the next move on.
    Strength& getStrength() { return strength; }

    // Thinks for the side to move, which has a legal move.
    Thought think(const Game& game);

    // Why the engine plays in `game` as in `thought`, which is what it thought there, in words;
    // or why it does not play the legal move `other` there. Takes some seconds at most; Ctrl-C
    // ends that sooner.
    std::string explain(const NumberedGame& game, const Thought& thought,
                        const std::optional<Move>& other) const;

private:
    Strength strength;
    std::unique_ptr<EngineConfig> config;
    std::unique_ptr<Engine> engine;
};

// The line of a thought and its worth, such as "3. Nf3 Nc6, +0.31 for White at depth 6". `ply`
// counts the half moves of the game so far.
std::string describe(const Position& position, const Thought& thought, int ply);
