#include "kestran-play/gameRecord.h"

#include "board/attacks.h"
#include "board/makeMove.h"
#include "notation/pgn.h"
#include "notation/san.h"
#include "search/searchParameters.h"

#include <algorithm>
#include <array>
#include <span>

namespace {

constexpr const char* DRAW = "1/2-1/2";

// By colour, and the result if that side wins.
constexpr std::array NAMES = {"White", "Black"};
constexpr std::array WINS = {"1-0", "0-1"};

// Whether no mate is possible, whatever is played: bare kings, or one with a single knight or
// bishop.
bool isBare(const Position& position) {
    const FieldSet minors = position.ofType[KNIGHT] | position.ofType[BISHOP];
    const FieldSet others = position.getOccupied() & ~minors & ~position.ofType[KING];
    return others == NO_FIELDS && countOf(minors) <= 1;
}

} // namespace

GameRecord::GameRecord(const NumberedGame& start) : states{start} {
    judge();
}

const NumberedGame& GameRecord::getGameBefore(int plies) const {
    return states[states.size() - 1 - static_cast<std::size_t>(plies)];
}

void GameRecord::play(const Move& move) {
    states.push_back(getGame());
    states.back().play(move);
    moves.push_back(move);
    judge();
}

void GameRecord::takeBack(int plies) {
    states.resize(states.size() - static_cast<std::size_t>(plies), states.front());
    moves.resize(moves.size() - static_cast<std::size_t>(plies));
    result.assign(1, '*');
    end.clear();
}

void GameRecord::resign(Color color) {
    finish(WINS[at(opposite(color))], std::string(NAMES[at(color)]) + " resigns.");
}

std::string GameRecord::getLastMoves(int plies) const {
    const NumberedGame& before = getGameBefore(plies);
    return lineToSan(before.position, std::span(moves).last(static_cast<std::size_t>(plies)),
                     before.ply);
}

std::string GameRecord::getPgn(Color human) const {
    const bool isHumanWhite = human == WHITE;
    PgnGame game = beginPgnGame("Game at a terminal", "?", isHumanWhite ? "Human" : "Kestran",
                                isHumanWhite ? "Kestran" : "Human");
    game.start = states.front();
    for (const Move& move : moves) {
        game.moves.push_back({move});
    }
    (game.moves.empty() ? game.comment : game.moves.back().comment) = end;
    game.result = result;
    return toPgn(game);
}

// Ends the game if the rules do.
void GameRecord::judge() {
    const Position& position = getPosition();
    const auto& keys = getGame().repetitionHashes;
    MoveArray legal;
    if (generateLegalMoves(position, legal) == 0) {
        if (isInCheckNoCaching(position)) {
            const Color winner = position.oppositeColorToMove();
            finish(WINS[at(winner)], std::string("Checkmate: ") + NAMES[at(winner)] + " wins.");
        } else {
            finish(DRAW, "Stalemate: the game is drawn.");
        }
    } else if (std::ranges::count(keys, keys.back()) >= 3) {
        finish(DRAW, "The position has come up three times: the game is drawn.");
    } else if (position.incremental.halfMoveClock >= MAX_HALF_MOVE_CLOCK) {
        finish(DRAW, "Fifty moves without a capture or a pawn move: the game is drawn.");
    } else if (isBare(position)) {
        finish(DRAW, "Neither side has the pieces to mate: the game is drawn.");
    }
}

void GameRecord::finish(const std::string& _result, const std::string& sentence) {
    result = _result;
    end = sentence;
}
