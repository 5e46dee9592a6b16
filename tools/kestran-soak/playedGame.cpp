#include "kestran-soak/playedGame.h"

#include "support/pgn.h"

std::string toPgn(const PlayedGame& game) {
    return toPgn(PgnGame{.event = "Soak, seed " + std::to_string(game.seed),
                         .round = std::to_string(game.number),
                         .white = "Kestran",
                         .black = "Kestran",
                         .result = game.result,
                         .termination = game.termination,
                         .timeControl = game.timeControl,
                         .fen = game.fen,
                         .moves = game.moves,
                         .comment = game.fault});
}
