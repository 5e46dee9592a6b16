#include "search/gameLine.h"

#include "board/makeMove.h"
#include "search/ida.h"
#include "search/score.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr std::int64_t MOST_NODES_TO_MATE = 300000;

bool isGameOver(const Game& game) {
    const Position& position = game.position;
    const auto& keys = game.repetitionHashes;
    MoveArray moves;
    return position.incremental.halfMoveClock >= MAX_HALF_MOVE_CLOCK ||
           std::count(keys.begin(), keys.end(), position.incremental.hash) > 2 ||
           generateLegalMoves(position, moves) == 0;
}

void play(Game& game, const Move& move) {
    DoMoveContext context;
    playMove(game.position, move, context);
    game.repetitionHashes.push_back(game.position.incremental.hash);
}

// Appends a line to another one; together they must have room.
void append(Variant& line, const Variant& rest) {
    Variant whole = rest;
    for (int i = line.varLength - 1; i >= 0; --i) {
        whole.extend(Variant(whole), line.get(i));
    }
    whole.evaluation = line.evaluation;
    line = whole;
}

} // namespace

void cutAtGameEnd(const Game& game, Variant& line) {
    Game after = game;
    for (int i = 0; i < line.varLength; ++i) {
        play(after, line.get(i).move);
        const int left = line.varLength - (i + 1); // stored before the others
        if (left > 0 && isGameOver(after)) {
            auto& moves = line.variantMoves;
            std::copy(moves.begin() + left, moves.begin() + line.varLength, moves.begin());
            line.varLength -= left;
            return;
        }
    }
}

void completeMate(const EngineConfig& config, const Game& game, Variant& line,
                  const std::function<bool()>& isStopped) {
    const int plies = -MATED_EVALUATION - std::abs(line.evaluation);
    const int missing = plies - line.varLength;
    if (!isMate(line.evaluation) || missing <= 0 || plies > MAX_VARIANT_MOVES) {
        return;
    }
    SearchRequest request;
    request.game = game;
    for (int i = 0; i < line.varLength; ++i) {
        play(request.game, line.get(i).move);
    }
    request.limits.depth = missing;
    request.limits.nodes = MOST_NODES_TO_MATE;
    request.limits.useBook = false;
    EngineConfig withoutTable = config;
    withoutTable.useTable = false;
    withoutTable.hashTableSize = 0;
    Ida(withoutTable).deepen(request, nullptr, [&](const SearchPass& pass) {
        if (pass.endsSearch && pass.line.varLength <= missing) {
            append(line, pass.line);
        }
        return !isStopped();
    });
}
