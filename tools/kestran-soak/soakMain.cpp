// kestran-soak: plays games between engines over pipes and checks all that they do.

#include "kestran-soak/soak.h"
#include "support/cli.h"
#include "support/terminal.h"
#include "support/textFile.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <sstream>

namespace {

std::atomic<bool> isInterrupted = false;

// The second signal ends the program at once.
void stopOnSignal(int signal) {
    isInterrupted = true;
    std::signal(signal, SIG_DFL);
}

// The parts between commas. The comma added keeps an empty last one.
std::vector<std::string> partsOf(const std::string& list) {
    std::istringstream rest(list + ',');
    std::vector<std::string> parts;
    for (std::string part; std::getline(rest, part, ',');) {
        parts.push_back(part);
    }
    return parts;
}

int play(SoakOptions options, const std::optional<std::string>& pgn) {
    if (options.sprt && !options.against) {
        throw UsageError("--sprt needs --against");
    }
    if (pgn) {
        requireWritable(*pgn);
    }
    std::signal(SIGINT, stopOnSignal);
    std::signal(SIGTERM, stopOnSignal);
    const auto began = std::chrono::steady_clock::now();
    Progress progress;
    options.onGame = [&](const SoakReport& soFar) {
        progress.show("game " + std::to_string(soFar.games.size()) + " of " +
                      std::to_string(options.games));
    };
    const SoakReport report = runSoak(options);
    progress.show("");
    writeReport(std::cout, report, options,
                std::chrono::floor<std::chrono::seconds>(std::chrono::steady_clock::now() - began));
    if (pgn) {
        std::string text;
        for (const GameRecord& game : report.games) {
            text += toPgn(game);
        }
        writeWhole(*pgn, text);
    }
    return report.isClean() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    Program program(
        "kestran-soak", "GAMES --engine PATH [OPTION...]",
        "Plays an engine against itself, or against another one, over pipes. Checks every move by "
        "the rules of chess, every line by the protocol, the clocks, the memory and the end of "
        "each process. Ctrl-C stops it with a report on the finished games.\n\n"
        "In a match, game 2n and game 2n + 1 are a pair: the same opening with colours swapped. An "
        "engine that breaks the rules loses its game. Elo, its error and the SPRT are computed "
        "from the mean and the variance of the points of whole pairs.\n\n"
        "The last line of the report is for scripts: \"summary\" and pairs such as games=200.",
        "an engine made a fault, or a file cannot be written");
    SoakOptions options;
    GameOptions& game = options.game;
    std::optional<int> games;
    std::optional<std::string> against;
    std::optional<std::string> pgn;
    program.addNumber("GAMES", games, 1, 1000000, "", "number of games");
    program.require("GAMES");
    program.addText("--engine", options.engine.path, "PATH", "the engine to play");
    program.require("--engine");
    program.addText("--against", against, "PATH", "its opponent in a match");
    program.addValue("--sprt", "E0,E1",
                     "end the match when a sequential test with error rates of 5 % has decided "
                     "whether the engine is E0 or E1 Elo stronger than its opponent",
                     [&](const std::string& text) {
                         auto& [elo0, elo1] = options.sprt.emplace();
                         char rest = 0;
                         if (std::sscanf(text.c_str(), "%lf,%lf%c", &elo0, &elo1, &rest) != 2 ||
                             elo0 >= elo1) {
                             throw UsageError("--sprt takes two numbers, the smaller one first, "
                                              "such as 0,5");
                         }
                     });
    program.addNumber("--jobs", options.jobs, 1, 1000, "N",
                      "games at a time: one on each processor, or 30 with --time 1/0.001");
    program.addNumber("--pause", options.engine.pause, 0, 10000, "MS",
                      "longest random pause before a move; it keeps engines from waking together");
    program.addValue("--time", "TIME,...",
                     "time controls in turn, 1/0.12,2+0.1,40/5 by default. In seconds: 1/0.001 is "
                     "0.001 for each move, 2+0.1 is 2 and 0.1 for each move, 40/5 is 5 for every "
                     "40 moves",
                     [&](const std::string& text) {
                         game.times = partsOf(text);
                         std::ranges::for_each(game.times, parseTimeControl); // refuses bad ones
                     });
    program.addValue("--hash", "MIB,...", "table sizes in turn, 192,16 by default",
                     [&](const std::string& text) {
                         game.hashes.clear();
                         for (const std::string& part : partsOf(text)) {
                             game.hashes.push_back(parseNumber(part, "--hash", 0, 65536));
                         }
                     });
    program.addNumber("--plies", game.plies, 1, 10000, "N", "a game of this length is a draw");
    program.addNumber("--seed", game.seed, 0, 1000000000, "N", "seed of the random openings");
    program.addNumber("--first", options.first, 0, 1000000, "N",
                      "number of the first game, to repeat a game by its number");
    program.addNumber("--margin", game.margin, 0, 60000, "MS",
                      "a move that exceeds its time by more loses; many jobs need a larger one");
    program.addText("--state", options.state, "FILE",
                    "keep each finished game in FILE and skip those that it holds, so that the "
                    "same command continues after a stop; for one run at a time");
    program.addText("--pgn", pgn, "FILE", "write the games");
    program.addText("--records", options.records, "FOLDER",
                    "where to write the conversation of a faulty game, the current folder by "
                    "default");
    return program.run(argc, argv, [&] {
        options.games = *games;
        if (against) {
            options.against = options.engine;
            options.against->path = *against;
        }
        game.isMatch = against.has_value();
        options.isStopWanted = [] { return isInterrupted.load(); };
        return play(options, pgn);
    });
}
