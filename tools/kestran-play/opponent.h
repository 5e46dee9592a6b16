// The engine as a partner: how strong it is, its moves, its advice, and why it plays as it does.
#pragma once

#include "engine/engine.h"
#include "notation/numberedGame.h"
#include "uci/levels.h"

#include <memory>
#include <optional>
#include <string>

struct Strength {
    // For a move. If not given, it is a second, or without limit if the nodes are limited.
    std::optional<Milliseconds> time = {};
    int depth = MAX_PASSES;       // plies, at most
    const Level* level = nullptr; // null for none
};

// The levels of uci/levels.h by their numbers from 1, and the full strength as the last.
inline constexpr int LEVEL_COUNT = static_cast<int>(LEVELS.size()) + 1;
// The limits of a level; null for the last, which has none.
const Level* getLevel(int number);
// A table of the levels, in lines.
std::string getLevelTable();
// "1,000 nodes for each move, rating about 1200".
std::string describeLevel(int number);

class Opponent {
public:
    explicit Opponent(const Strength& _strength) : strength(_strength) {}

    // Thinks for the side to move, which has a legal move.
    SearchResult think(const Game& game);

    // Why the engine plays in `game` as in `thought`, which is what it thought there, in words;
    // or why it does not play the legal move `other` there. Takes some seconds at most; Ctrl-C
    // ends that sooner.
    std::string explain(const NumberedGame& game, const SearchResult& thought,
                        const std::optional<Move>& other) const;

    Strength strength; // from the next move on

private:
    std::unique_ptr<EngineConfig> config = EngineConfig::getProdConfig();
    std::unique_ptr<Engine> engine = std::make_unique<Engine>(
        *config, WaitPolicy{.interval = 10, .margin = 0, .isWokenByEnd = true});
};

// The line of a thought and its worth, such as "3. Nf3 Nc6, +0.31 for White at depth 6".
std::string describe(const NumberedGame& game, const SearchResult& thought);
