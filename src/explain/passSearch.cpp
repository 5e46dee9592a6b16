#include "explain/passSearch.h"

#include <algorithm>

bool isGood(const PassReport& pass) {
    return pass.result == IdaNS::OK || pass.result == IdaNS::OK_FINISH;
}

const PassReport* findLastGood(const std::vector<PassReport>& passes) {
    const auto found = std::find_if(passes.rbegin(), passes.rend(), isGood);
    return found != passes.rend() ? &*found : nullptr;
}

std::unique_ptr<Ida> makeSearch(const EngineConfig& config) {
    return std::make_unique<Ida>(config);
}

std::vector<PassReport> searchPasses(Ida& ida, const SearchRequest& request, IdaVariant* slot,
                                     const PassListener& onPass) {
    std::vector<PassReport> passes;
    const Milliseconds start = clockMilliseconds();
    std::int64_t nodesBefore = 0;
    ida.deepen(request, slot, [&](const SearchPass& pass) {
        if (pass.result) {
            passes.push_back({pass.depth, *pass.result, pass.line, pass.nodes - nodesBefore,
                              pass.window, pass.nodes, clockMilliseconds() - start,
                              ida.getTreeGenerator().state.table.getHashTable().getUsedPermille()});
            nodesBefore = pass.nodes;
            if (onPass) {
                onPass(passes.back());
            }
        }
        return true;
    });
    return passes;
}

std::vector<PassReport> watchSearch(Ida& ida, const SearchRequest& request,
                                    const std::vector<Move>& line, Explain& explain,
                                    IdaVariant* slot, const PassListener& onPass) {
    Variant watched;
    for (std::size_t i = line.size(); i-- > 0;) {
        watched.extend(Variant(watched), {line[i], false, false, false});
    }
    explain.setVariant(request.game.position, watched);
    ida.watchBy(explain);
    return searchPasses(ida, request, slot, onPass);
}

SearchRequest depthRequest(const Game& game, int depth, const std::vector<Move>& rootMoves) {
    SearchRequest request;
    request.limits.depth = depth;
    request.limits.useBook = false;
    request.limits.rootMoves = rootMoves;
    request.game = game;
    return request;
}

std::vector<Move> movesOf(const Variant& variant) {
    std::vector<Move> moves(at(variant.varLength));
    for (int i = 0; i < variant.varLength; ++i) {
        moves[at(i)] = variant.get(i).move;
    }
    return moves;
}
