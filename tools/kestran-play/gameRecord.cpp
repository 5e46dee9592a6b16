#include "kestran-play/gameRecord.h"

#include "board/gameEnd.h"
#include "notation/pgn.h"
#include "notation/san.h"

#include <array>
#include <span>

namespace {

// By colour, and the result if that side wins.
constexpr std::array NAMES = {"White", "Black"};
constexpr std::array WINS = {"1-0", "0-1"};

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
    if (const auto rules = findGameEnd(getGame())) {
        finish(rules->result, rules->text);
    }
}

void GameRecord::finish(const std::string& _result, const std::string& sentence) {
    result = _result;
    end = sentence;
}
