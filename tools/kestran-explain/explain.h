// kestran-explain: why did the search not follow this line?
#pragma once

#include "board/game.h"
#include "explain/treeGeneratorDebug.h"
#include "kestran-explain/passSearch.h"
#include "search/engineParameters.h"

#include <vector>

// Searches as searchPasses() does, with tables of its own, while `explain` watches `line`.
std::vector<PassReport> watchSearch(const EngineConfig& config, const Game& game,
                                    const std::vector<Move>& line, int depth, Explain& explain,
                                    IdaVariant* slot = nullptr,
                                    const std::function<void(const PassReport&)>& onPass = {});

// The main function of kestran-explain.
int explainMain(int argc, const char* const* argv);
