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

std::optional<EndReason> findReason(const Game& game) {
    const Position& position = game.position;
    const auto& keys = game.repetitionHashes;
    MoveArray legal;
    if (generateLegalMoves(position, legal) == 0) {
        return isInCheckNoCaching(position) ? EndReason::CHECKMATE : EndReason::STALEMATE;
    }
    if (!keys.empty() && std::count(keys.begin(), keys.end(), keys.back()) >= 3) {
        return EndReason::REPETITION;
    }
    if (position.incremental.halfMoveClock >= FIFTY_MOVES_IN_PLIES) {
        return EndReason::FIFTY_MOVES;
    }
    return isBare(position) ? std::optional(EndReason::MATERIAL) : std::nullopt;
}

std::string textOf(EndReason reason, Color winner) {
    switch (reason) {
    case EndReason::CHECKMATE:
        return std::string("Checkmate: ") + COLOR_NAMES[at(winner)] + " wins.";
    case EndReason::STALEMATE:
        return "Stalemate: the game is drawn.";
    case EndReason::REPETITION:
        return "The position has come up three times: the game is drawn.";
    case EndReason::FIFTY_MOVES:
        return "Fifty moves without a capture or a pawn move: the game is drawn.";
    case EndReason::MATERIAL:
        return "Neither side has the pieces to mate: the game is drawn.";
    }
    return "";
}

} // namespace

std::optional<GameEnd> findGameEnd(const Game& game) {
    const std::optional<EndReason> reason = findReason(game);
    if (!reason) {
        return std::nullopt;
    }
    const Color winner = opposite(game.position.colorToMove); // if it is checkmate
    return GameEnd{*reason, *reason == EndReason::CHECKMATE ? WINS[at(winner)] : "1/2-1/2",
                   textOf(*reason, winner)};
}
