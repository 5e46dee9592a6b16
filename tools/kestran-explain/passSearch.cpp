#include "kestran-explain/passSearch.h"

#include "support/requireTable.h"

bool isGood(const PassReport& pass) {
    return pass.result == IdaNS::OK || pass.result == IdaNS::OK_FINISH;
}

std::unique_ptr<Ida> makeSearch(const EngineConfig& config) {
    auto ida = std::make_unique<Ida>(config);
    requireTable(ida->getTreeGenerator().state.table.getSize(), config.hashTableSize);
    return ida;
}

std::vector<PassReport> searchPasses(Ida& ida, const Game& game, int depth, IdaVariant* slot,
                                     const std::function<void(const PassReport&)>& onPass,
                                     const std::vector<Move>& rootMoves) {
    SearchRequest request;
    request.limits.depth = depth;
    request.limits.useBook = false;
    request.limits.rootMoves = rootMoves;
    request.game = game;
    std::vector<PassReport> passes;
    std::int64_t nodesBefore = 0;
    ida.deepen(request, slot, [&](const SearchPass& pass) {
        if (pass.result) {
            passes.push_back({pass.depth, *pass.result, pass.line, pass.nodes - nodesBefore});
            nodesBefore = pass.nodes;
            if (onPass) {
                onPass(passes.back());
            }
        }
        return true;
    });
    return passes;
}
