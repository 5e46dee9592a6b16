// kestran-soak: plays the engine against itself and tells what went wrong.

#include "kestran-soak/soak.h"
#include "support/commandLine.h"

#include <chrono>
#include <iostream>

namespace {

const std::string HELP =
    R"(Usage: tools/soak GAMES [OPTION...]

Plays GAMES games of the engine against itself over pipes, at very short times, and
checks every move, every line and the clocks. Exit status 1 if there was any fault.

  --seed N       of the random openings, 1 by default
  --first N      number of the first game, 0 by default, to repeat a game by its number
  --jobs N       engines side by side, 1 by default
  --margin MS    by which a clock may be overrun without a loss, 100 by default: the
                 engine looks at its clock every 100 ms and ends a search at the look that
                 is nearest to its end. Overruns inside the margin are listed, not faults
  --engine PATH  the engine to play, by default the one of this source tree
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
              << " Black, " << report.draws << " drawn, " << report.unfinished
              << " of the greatest length\n";
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

int run(CommandLine& commandLine) {
    SoakOptions options;
    options.engine = commandLine.takeOption("--engine").value_or("");
    options.seed = static_cast<unsigned>(
        parseNumber(commandLine.takeOption("--seed").value_or("1"), "--seed", 0, 1000000000));
    options.first =
        parseNumber(commandLine.takeOption("--first").value_or("0"), "--first", 0, 1000000);
    options.jobs = parseNumber(commandLine.takeOption("--jobs").value_or("1"), "--jobs", 1, 64);
    options.margin =
        parseNumber(commandLine.takeOption("--margin").value_or("100"), "--margin", 0, 10000);
    const std::vector<std::string> rest = commandLine.takeRest();
    if (rest.size() != 1 || options.engine.empty()) {
        throw UsageError("how many games, of which engine?");
    }
    options.games = parseNumber(rest[0], "GAMES", 1, 1000000);

    const auto began = std::chrono::steady_clock::now();
    Progress progress;
    const SoakReport report = runSoak(options, [&](const SoakReport& soFar) {
        const std::size_t faults =
            soFar.timeLosses.size() + soFar.illegalMoves.size() + soFar.protocolFaults.size();
        progress.show("game " + std::to_string(soFar.games) + " of " + rest[0] + ", " +
                      std::to_string(soFar.plies) + " plies, " + std::to_string(faults) +
                      " faults");
    });
    progress.show("");
    printReport(report, std::chrono::duration_cast<std::chrono::seconds>(
                            std::chrono::steady_clock::now() - began));
    return report.isClean() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    return runTool("soak", HELP, argc, argv, run);
}
