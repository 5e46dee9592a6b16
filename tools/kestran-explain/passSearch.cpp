#include "kestran-explain/passSearch.h"

#include "search/hashTable.h"
#include "support/commandLine.h"

bool isGood(const PassReport& pass) {
    return pass.result == IdaNS::OK || pass.result == IdaNS::OK_FINISH;
}

std::unique_ptr<Ida> makeSearch(const EngineConfig& config) {
    auto ida = std::make_unique<Ida>(config);
    if (ida->getTreeGenerator().getState().table.getHashTable().getSize() != config.hashTableSize) {
        throw UsageError("there is no memory for the table; --hash asks for a smaller one");
    }
    return ida;
}

std::vector<PassReport> searchPasses(Ida& ida, const Game& game, int depth, IdaVariant* slot,
                                     const std::function<void(const PassReport&)>& onPass) {
    SearchState& state = ida.getTreeGenerator().getState();
    state.repetitionTable.begin(game.repetitionHashes);
    state.nodes.setIdaVariant(slot);
    std::vector<PassReport> passes;
    Position position = game.position;
    Variant line;
    for (int passDepth = 1; passDepth <= depth;) {
        const std::int64_t before = state.nodes.getSearchedAllNodes();
        const auto result = ida.generateTreeIdaOneLoop(position, line, passDepth, true);
        if (!result) {
            break;
        }
        passes.push_back({passDepth, *result, line, state.nodes.getSearchedAllNodes() - before});
        if (onPass) {
            onPass(passes.back());
        }
        if (*result == IdaNS::OK_FINISH) {
            break;
        }
        passDepth += *result == IdaNS::OK ? 1 : 0;
    }
    return passes;
}
