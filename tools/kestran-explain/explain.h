// kestran-explain: why did the search not follow this line?
#pragma once

#include "base/engineParameters.h"
#include "board/game.h"
#include "explain/treeGeneratorDebug.h"

#include <vector>

class InfoListenerInterface;

// Searches the position of `game` to `depth` plies, without the book, while `explain`
// watches `line`. Returns the line found. `listener` may be null.
Variant watchSearch(const EngineConfig& config, const Game& game, const std::vector<Move>& line,
                    int depth, Explain& explain, InfoListenerInterface* listener);

// The tool. Returns its exit status.
int explainMain(int argc, const char* const* argv);
