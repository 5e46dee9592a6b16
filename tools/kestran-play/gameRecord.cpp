#include "kestran-play/gameRecord.h"

#include "board/gameEnd.h"
#include "notation/pgn.h"
#include "notation/san.h"

#include <span>

GameRecord::GameRecord(const NumberedGame& start) : states{start} {
    judge();
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
    judge();
}

void GameRecord::resign(Color color) {
    end = {WINS[at(opposite(color))], std::string(COLOR_NAMES[at(color)]) + " resigns."};
}

std::string GameRecord::getLastMoves(int plies) const {
    const auto count = static_cast<std::size_t>(plies);
    const NumberedGame& before = states[moves.size() - count];
    return lineToSan(before.position, std::span(moves).last(count), before.ply);
}

std::string GameRecord::getPgn(Color human) const {
    const bool isHumanWhite = human == WHITE;
    PgnGame game = beginPgnGame("Game at a terminal", "?", isHumanWhite ? "Human" : "Kestran",
                                isHumanWhite ? "Kestran" : "Human");
    game.start = states.front();
    for (const Move& move : moves) {
        game.moves.push_back({move});
    }
    (game.moves.empty() ? game.comment : game.moves.back().comment) = end.text;
    game.result = end.result;
    return toPgn(game);
}

// Whether the rules end the game.
void GameRecord::judge() {
    const auto rules = findGameEnd(getGame());
    end = rules ? End{rules->result, rules->text} : End{};
}
