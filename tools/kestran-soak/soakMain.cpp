// kestran-soak: plays the engine against itself and tells what went wrong.

#include "kestran-soak/soak.h"
#include "support/commandLine.h"
#include "support/textFile.h"
#include "support/uciProcess.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <iostream>
#include <optional>

namespace {

// tools/soak cuts this text out to print it without a build.
const std::string HELP =
    R"(Usage: tools/soak GAMES [OPTION...]

Plays GAMES games of the engine against itself over pipes, at very short times, and
checks every move, every line and the clocks. Ctrl-C ends it with a report on the games
so far.

  --seed N          of the random openings, 1 by default
  --first N         number of the first game, 0 by default, to repeat a game by its number
  --jobs N          engines side by side, 1 by default
  --margin MS       by which a clock may be overrun without a loss, 100 by default: the
                    engine looks at its clock every 100 ms and ends a search at the look
                    that is nearest to its end. Overruns inside the margin are listed, not
                    faults
  --engine PATH     another build of the engine to play, by default the one of this source
                    tree
  --pgn FILE        writes the games, also those that a fault has ended
  --records FOLDER  where a fault leaves the position, the moves and the conversation of
                    its game, build/soak of this source tree by default

Exit status: 0; 1 if there was any fault or a file cannot be written; 2 for input that
makes no sense or an engine that cannot be started.
)";

void printFaults(const std::string& title, const std::vector<std::string>& faults) {
    std::cout << title << faults.size() << '\n';
    for (const std::string& fault : faults) {
        std::cout << "    " << fault << '\n';
    }
}

void printReport(const SoakReport& report, std::chrono::seconds elapsed) {
    std::cout << "games            " << report.games << '\n'
              << "plies            " << report.plies << '\n'
              << "results          " << report.whiteWins << " White, " << report.blackWins
              << " Black, " << report.draws << " drawn, " << report.unfinished << " unfinished\n";
    printFaults("time losses      ", report.timeLosses);
    printFaults("illegal moves    ", report.illegalMoves);
    printFaults("protocol faults  ", report.protocolFaults);
    printFaults("clock overruns   ", report.overruns);
    std::cout << "latest answer    " << report.latest << " ms past its movetime\n";
    for (const auto& [first, last] : report.memory) {
        std::cout << "memory           " << first << " KiB after the first game, " << last
                  << " KiB after the last\n";
    }
    std::cout << "elapsed          " << elapsed.count() << " s\n"
              << (report.isClean() ? "No fault.\n" : "FAULTS.\n");
}

std::atomic<bool> isInterrupted = false;

// The second Ctrl-C ends the program in the ordinary way.
void endOnInterrupt() {
    std::signal(SIGINT, [](int signal) {
        isInterrupted = true;
        std::signal(signal, SIG_DFL);
    });
}

SoakOptions readOptions(CommandLine& commandLine) {
    SoakOptions options;
    options.engine = commandLine.takeOption("--engine").value_or("");
    options.records = commandLine.takeOption("--records").value_or(options.records);
    options.seed =
        static_cast<unsigned>(takeNumber(commandLine, "--seed", 0, 1000000000).value_or(1));
    options.first = takeNumber(commandLine, "--first", 0, 1000000).value_or(0);
    options.jobs = takeNumber(commandLine, "--jobs", 1, 64).value_or(1);
    options.margin = takeNumber(commandLine, "--margin", 0, 10000).value_or(100);
    const std::vector<std::string> rest = commandLine.takeRest();
    if (rest.size() != 1 || options.engine.empty()) {
        throw UsageError("how many games, of which engine?");
    }
    options.games = parseNumber(rest[0], "GAMES", 1, 1000000);
    options.isStopWanted = [] { return isInterrupted.load(); };
    return options;
}

SoakReport playAll(const SoakOptions& options) {
    Progress progress;
    const auto showGames = [&](const SoakReport& soFar) {
        const std::size_t faults =
            soFar.timeLosses.size() + soFar.illegalMoves.size() + soFar.protocolFaults.size();
        progress.show("game " + std::to_string(soFar.games) + " of " +
                      std::to_string(options.games) + ", " + std::to_string(soFar.plies) +
                      " plies, " + std::to_string(faults) + " faults");
    };
    try {
        return runSoak(options, showGames);
    } catch (const CannotStart& failure) {
        throw UsageError(failure.what());
    }
}

int run(CommandLine& commandLine) {
    const std::optional<std::string> pgn = commandLine.takeOption("--pgn");
    const SoakOptions options = readOptions(commandLine);
    if (pgn) {
        requireWritable(*pgn);
    }
    endOnInterrupt();
    const auto began = std::chrono::steady_clock::now();
    const SoakReport report = playAll(options);
    printReport(report, std::chrono::duration_cast<std::chrono::seconds>(
                            std::chrono::steady_clock::now() - began));
    if (pgn) {
        std::string games;
        for (const PlayedGame& game : report.record) {
            games += toPgn(game);
        }
        writeWhole(*pgn, games);
    }
    return report.isClean() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    return runTool("soak", HELP, argc, argv, run);
}
