#include "search/gameLine.h"

#include "board/makeMove.h"
#include "search/searchParameters.h"

#include <algorithm>

namespace {

bool isGameOver(const Game& game) {
    const Position& position = game.position;
    const auto& keys = game.repetitionHashes;
    MoveArray moves;
    return position.incremental.halfMoveClock >= MAX_HALF_MOVE_CLOCK ||
           std::count(keys.begin(), keys.end(), position.incremental.hash) > 2 ||
           generateLegalMoves(position, moves) == 0;
}

} // namespace

void playOn(Game& game, const Move& move) {
    DoMoveContext context;
    playMove(game.position, move, context);
    game.repetitionHashes.push_back(game.position.incremental.hash);
}

void cutAtGameEnd(const Game& game, Variant& line) {
    Game after = game;
    for (int i = 0; i < line.varLength; ++i) {
        playOn(after, line.get(i).move);
        const int left = line.varLength - (i + 1); // stored before the others
        if (left > 0 && isGameOver(after)) {
            auto& moves = line.variantMoves;
            std::copy(moves.begin() + left, moves.begin() + line.varLength, moves.begin());
            line.varLength -= left;
            return;
        }
    }
}
