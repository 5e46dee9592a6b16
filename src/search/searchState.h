// The state that all nodes of a search share. While a search runs, only its thread may use it.
#pragma once

#include "search/engineParameters.h"
#include "search/moveOrder.h"
#include "search/nodeCounter.h"
#include "search/repetitionTable.h"
#include "search/transpositionTable.h"

#include <algorithm>
#include <vector>

struct TreeNode;

struct SearchState {
    explicit SearchState(const EngineConfig& _config)
        : config(_config), table(_config.hashTableSize) {}

    // The configured plies of quiescence, at most `quiscenceLimit`; 0 switches quiescence off.
    // Any negative setting gives -1, which searches like 1.
    int getQuiscenceMaxDepth() const {
        return std::clamp(config.quiscenceMaxDepth, -1, quiscenceLimit);
    }

    const EngineConfig& config;
    TranspositionTable table;
    RepetitionTable repetitionTable;
    MoveOrder order;
    NodeCounter nodes;
    int quiscenceLimit = MAX_QUISCENCE_DEPTH; // 0 to MAX_QUISCENCE_DEPTH
    int actualMoveDepth = 1;                  // depth of the pass in plies, 1 to MAX_PASSES
    std::vector<Move> rootMoves;    // the moves that the root may choose from; all if empty
    const TreeNode* root = nullptr; // while a pass runs; not owned
};
