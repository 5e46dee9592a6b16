#include "search/rootLines.h"

#include "base/indexed.h"
#include "board/makeMove.h"

#include <algorithm>

namespace {

// The legal moves that the root may choose from.
std::vector<Move> getAllowedMoves(const SearchRequest& request) {
    if (!request.limits.rootMoves.empty()) {
        return request.limits.rootMoves;
    }
    MoveArray moves;
    const int count = generateLegalMoves(request.game.position, moves);
    return {moves.begin(), moves.begin() + count};
}

} // namespace

RootLines::RootLines(const SearchRequest& request)
    : allowed(getAllowedMoves(request)),
      lines(std::clamp<std::size_t>(allowed.size(), 1, at(request.limits.lines))) {
}

void RootLines::setUp(SearchState& state, const Position& position, int depth) {
    state.rootMoves = allowed;
    for (std::size_t before = 0; before < current; ++before) {
        std::erase_if(state.rootMoves, [&](const Move& move) {
            return testMoveEquality(move, lines[before].variant.get(0).move);
        });
    }
    if (state.config.useTable) {
        const Variant& variant = getCurrent().variant;
        state.table.addTableEntry(position, variant.getFirstMove(), depth - 1, variant.evaluation,
                                  DEFAULT_FIRST_ALFA, DEFAULT_FIRST_BETA);
    }
}

void RootLines::judge(SearchPass& pass) {
    pass.lineNumber = static_cast<int>(current) + 1;
    if (pass.isGood()) {
        isSettled = isSettled && pass.result == IdaNS::OK_FINISH;
        pass.endsDepth = current + 1 == lines.size() || pass.line.varLength == 0;
        pass.endsSearch = pass.endsDepth && isSettled;
    }
}

void RootLines::advance(const SearchPass& pass) {
    getCurrent().window = pass.next;
    if (pass.endsDepth) {
        current = 0;
        isSettled = true;
    } else if (pass.isGood()) {
        ++current;
    }
}
