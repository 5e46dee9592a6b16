// kestran-play: a game against the engine in a terminal, command by command.

#include "kestran-play/gameKeeper.h"
#include "kestran-play/lineInput.h"
#include "kestran-play/table.h"
#include "support/cli.h"
#include "support/gameInput.h"
#include "support/textFile.h"

#include <iostream>
#include <limits>
#include <random>

namespace {

constexpr const char* DESCRIPTION =
    "Plays a game against the engine in a terminal. Moves are written as players do, Nf3 exd6 O-O "
    "e8=Q, or as g1f3 e5d6 e1g1 e7e8q. \"help\" lists what else can be typed: to take a move "
    "back, to change the strength, for a hint, and for the reason of the engine's last move.";

constexpr int ANY_NUMBER = std::numeric_limits<int>::max();

struct PlayOptions {
    std::vector<std::string> words; // a position
    std::string side = "white";
    Strength strength;
    std::optional<int> level;
    std::optional<int> rating;
    std::optional<std::string> pgn; // a file
    std::optional<int> game;        // of that file, to begin with
    std::optional<int> ply;
    bool withLetters = false;
};

int runPlay(const PlayOptions& options) {
    Strength strength = options.strength;
    if (options.level) {
        strength.level = getLevel(*options.level);
    }
    if (options.rating) {
        strength.level = &getLevelForRating(*options.rating);
    }
    const bool isFromFile = options.game || options.ply;
    const NumberedGame start = readGame(
        options.words, "",
        isFromFile ? PgnSource{options.pgn, options.game.value_or(1), options.ply} : PgnSource());
    const bool isBlack =
        options.side == "random" ? std::random_device()() % 2 != 0 : options.side == "black";
    const Color human = isBlack ? BLACK : WHITE;
    BoardStyle style = getUsualStyle();
    style.withSymbols = style.withSymbols && !options.withLetters;
    style.bottom = human;
    if (options.pgn) {
        requireWritable(*options.pgn);
    }

    GameKeeper keeper(options.pgn, std::cout);
    Table table(start, human, strength, style, keeper, std::cout);
    std::cout << "You play " << COLOR_NAMES[at(human)] << R"(. Type a move, or "help".)" << '\n';
    table.begin();
    std::optional<std::string> line;
    while ((line = readTypedLine(table.getPrompt())) && table.handleLine(*line)) {
    }
    if (!line) {
        std::cout << '\n'; // ends the line of the prompt
    }
    keeper.leave();
    return 0;
}

} // namespace

// CLI11 throws outside run() only if an option is declared wrongly.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
    PlayOptions options;
    Program program("kestran-play", "[OPTION]... [FEN]", DESCRIPTION,
                    "a game or the output cannot be written");
    program.addWords("FEN", options.words, FEN_HELP);
    program.addChoice("--side", options.side, {"white", "black", "random"}, "SIDE",
                      "your side: white, black or random");
    program.addSeconds(
        "--time", options.strength.time, MAX_SECONDS,
        "seconds that the engine thinks about each move, such as 5 or 0.2 (default 1; no "
        "limit with a level that limits nodes)");
    program.addNumber("--level", options.level, 1, LEVEL_COUNT, "N",
                      "how strongly the engine plays; the command \"level\" lists the levels "
                      "with their ratings, which are estimates");
    program.addNumber("--elo", options.rating, LEVELS.front().rating, LEVELS.back().rating, "N",
                      "play at the level whose rating is nearest");
    program.excludes("--elo", {"--level"});
    program.addNumber("--depth", options.strength.depth, 1, MAX_PASSES, "N",
                      "how many plies the engine looks ahead at most; fewer are weaker");
    program.addText("--pgn", options.pgn, "FILE",
                    "append every game to FILE in PGN when it ends or is left");
    program.addNumber("--game", options.game, 1, ANY_NUMBER, "N",
                      "begin where game N of FILE ends, or with --ply earlier");
    program.needs("--game", "--pgn");
    program.addNumber("--ply", options.ply, 0, ANY_NUMBER, "N",
                      "begin after N half moves of that game, the first if --game is not given");
    program.needs("--ply", "--pgn");
    program.addFlag("--ascii", options.withLetters,
                    "show letters for the pieces even if the terminal has symbols");
    return program.run(argc, argv, [&] { return runPlay(options); });
}
