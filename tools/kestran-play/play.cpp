#include "kestran-play/play.h"

#include "base/clock.h"
#include "kestran-play/table.h"
#include "support/commandLine.h"
#include "support/gameInput.h"
#include "support/lockedFile.h"
#include "support/textFile.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <random>
#include <system_error>

namespace {

struct PlayOptions {
    Game start;
    Color human;
    Strength strength;
    BoardStyle style = getUsualStyle();
    std::optional<std::string> pgn; // a file
};

Milliseconds parseSeconds(const std::string& text) {
    constexpr double LONGEST = 86400;
    char* end = nullptr;
    const double seconds = std::strtod(text.c_str(), &end);
    if (end == text.c_str() || *end != '\0' || !(seconds > 0 && seconds <= LONGEST)) {
        throw UsageError("--time is a number of seconds above 0 and up to 86400, not \"" + text +
                         "\"");
    }
    return std::max<Milliseconds>(std::llround(seconds * 1000), 1);
}

Color parseSide(const std::string& text) {
    if (text == "random") {
        return std::random_device()() % 2 == 0 ? WHITE : BLACK;
    }
    if (text != "white" && text != "black") {
        throw UsageError("--side is white, black or random, not \"" + text + "\"");
    }
    return text == "white" ? WHITE : BLACK;
}

PlayOptions readOptions(CommandLine& commandLine) {
    PlayOptions options;
    options.human = parseSide(commandLine.takeOption("--side").value_or("white"));
    options.style.bottom = options.human;
    if (const auto time = commandLine.takeOption("--time")) {
        options.strength.time = parseSeconds(*time);
    }
    options.strength.depth = takeNumber(commandLine, "--depth", 1, MAX_PASSES).value_or(MAX_PASSES);
    if (commandLine.takeFlag("--ascii")) {
        options.style.withSymbols = false;
    }
    options.pgn = commandLine.takeOption("--pgn");
    options.start = readGame(commandLine.takeRest(), "");
    if (options.pgn) {
        requireWritable(*options.pgn);
    }
    return options;
}

// Adds the game to the file, or shows it if there is none.
void leave(const std::string& game, const std::optional<std::string>& path) {
    if (game.empty()) {
        return;
    }
    if (!path) {
        std::cout << game;
        return;
    }
    try {
        LockedFile(*path).append(game);
    } catch (const std::system_error& error) {
        throw std::runtime_error("the game cannot be added to " + *path + ": " +
                                 error.code().message() + "; here it is:\n" + game);
    }
}

} // namespace

const std::string PLAY_HELP =
    R"(Usage: kestran-play [FEN] [--side SIDE] [--time S] [--depth N] [--pgn FILE] [--ascii]

Plays a game against the engine in a terminal. Moves are written as players do, Nf3 exd6
O-O e8=Q, or g1f3 e5d6 e1g1 e7e8q. "help" lists what else can be typed: to take a move
back, for a hint, and for the reason of the engine's last move.

  FEN          the position to begin with, quoted or not; the start position by default
  --side SIDE  yours: white, black or random; white by default
  --time S     seconds that the engine thinks about a move, such as 5 or 0.2; 1 by default
  --depth N    half moves that it looks ahead at most, 1 to 20; a lower number is weaker
  --pgn FILE   adds the game to FILE at the end, in PGN; without it, the game is shown
  --ascii      letters for the pieces, also where the terminal has symbols

Colours are used on a terminal unless NO_COLOR is set or TERM is "dumb", and symbols of chess
where the environment names UTF-8.

Exit status: 0; 1 if the game or the output cannot be written; 2 for input that makes no
sense.
)";

int runPlay(CommandLine& commandLine) {
    const PlayOptions options = readOptions(commandLine);
    Table table(options.start, options.human, options.strength, options.style, std::cout);
    std::cout << "You play " << (options.human == WHITE ? "White" : "Black")
              << R"(. Type a move, or "help".)" << '\n';
    table.begin();
    std::string line;
    while (std::cout << table.getPrompt() << std::flush && std::getline(std::cin, line) &&
           table.handleLine(line)) {
    }
    if (std::cin.eof()) {
        std::cout << '\n'; // behind the prompt
    }
    leave(table.getPgn(), options.pgn);
    return 0;
}
