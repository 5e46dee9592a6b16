#include "board/gameEnd.h"

#include "board/attacks.h"
#include "board/makeMove.h"

#include <algorithm>

namespace {

constexpr int FIFTY_MOVES_IN_PLIES = 100;

// Whether neither side can mate: at most one knight or bishop is left beside the kings.
bool isBare(const Position& position) {
    const ByType<FieldSet>& ofType = position.ofType;
    return (ofType[PAWN] | ofType[ROOK] | ofType[QUEEN]) == NO_FIELDS &&
           countOf(ofType[KNIGHT] | ofType[BISHOP]) <= 1;
}

} // namespace

std::optional<GameEnd> findGameEnd(const Game& game) {
    const Position& position = game.position;
    const auto& keys = game.repetitionHashes;
    MoveArray legal;
    if (generateLegalMoves(position, legal) == 0) {
        return isInCheckNoCaching(position) ? GameEnd::CHECKMATE : GameEnd::STALEMATE;
    }
    if (!keys.empty() && std::count(keys.begin(), keys.end(), keys.back()) >= 3) {
        return GameEnd::REPETITION;
    }
    if (position.incremental.halfMoveClock >= FIFTY_MOVES_IN_PLIES) {
        return GameEnd::FIFTY_MOVES;
    }
    return isBare(position) ? std::optional(GameEnd::MATERIAL) : std::nullopt;
}
