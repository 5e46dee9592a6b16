// kestran-soak: plays the engine against itself and tells what went wrong.

#include "kestran-soak/soak.h"
#include "support/commandLine.h"
#include "support/system.h"
#include "support/textFile.h"
#include "support/uciProcess.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

namespace {

// tools/soak cuts this text out to print it without a build.
const std::string HELP =
    R"(Usage: kestran-soak GAMES --engine PATH [OPTION...]

Plays GAMES games of the engine against itself over pipes, at very short times, and
checks every move, every line, the clocks and the memory. Ctrl-C ends it with a report on
the games so far.

  --jobs N          engines side by side, 1 by default. An engine that may think for its
                    whole time needs a processor of its own; at --time 1/0.001 it sleeps
                    most of its time, and some 30 go together on each processor, or
                    hundreds if they may be late
  --pause MS        before each move a pause of random length up to MS milliseconds, none by
                    default. Engines that have waited for a processor together go on
                    waking together, unless each pauses for another time
  --time TIME,...   by which the games are played in turn, 1/0.12,2+0.1,40/5 by default.
                    In seconds: 1/0.001 is a thousandth for each move, 2+0.1 two and a
                    tenth for each move, 40/5 five for each forty moves
  --hash MIB,...    sizes of the table in turn, 192,16 by default. Hundreds of engines
                    want a small one
  --plies N         of the longest game, 300 by default
  --seed N          of the random openings, 1 by default
  --first N         number of the first game, 0 by default, to repeat a game by its number
  --state FILE      keeps each game in FILE as soon as it has been played. Games that are
                    in it are not played again, but they count in the report: after a
                    stop, the same command goes on
  --margin MS       by which a clock may be overrun without a loss, 100 by default: the
                    engine looks at its clock every 100 ms and ends a search at the look
                    that is nearest to its end. Overruns inside the margin are listed, not
                    faults
  --grace MS        by which an answer may be later than its time for a move without a
                    loss, 150 by default. Time in which an engine waited for a processor
                    never makes a loss; such answers are counted apart
  --engine PATH     the engine to play; tools/soak plays that of its source tree by default
  --pgn FILE        writes the games, also those that a fault has ended
  --records FOLDER  where a fault leaves the position, the moves and the conversation of
                    its game, the current folder by default; for tools/soak it is
                    build/soak of its source tree

The last line of the report is for scripts: "summary", and pairs like games=200. The report
tells for each time how far beyond it the moves went.

Exit status: 0; 1 if there was any fault or a file cannot be written; 2 for input that
makes no sense or an engine that cannot be started.
)";

std::atomic<bool> isInterrupted = false;

// The second Ctrl-C ends the program in the ordinary way.
void endOnInterrupt() {
    std::signal(SIGINT, [](int signal) {
        isInterrupted = true;
        std::signal(signal, SIG_DFL);
    });
}

void readGameOptions(CommandLine& commandLine, SoakOptions& options) {
    options.seed =
        static_cast<unsigned>(takeNumber(commandLine, "--seed", 0, 1000000000).value_or(1));
    options.plies = takeNumber(commandLine, "--plies", 1, 10000).value_or(options.plies);
    options.margin = takeNumber(commandLine, "--margin", 0, 10000).value_or(options.margin);
    options.grace = takeNumber(commandLine, "--grace", 0, 10000).value_or(options.grace);
    if (const std::optional<std::string> list = commandLine.takeOption("--time")) {
        options.times.clear();
        for (const std::string& text : splitAt(*list, ',')) {
            options.times.push_back(parseTimeControl(text));
        }
    }
    if (const std::optional<std::string> list = commandLine.takeOption("--hash")) {
        options.hashes.clear();
        for (const std::string& text : splitAt(*list, ',')) {
            options.hashes.push_back(parseNumber(text, "--hash", 0, 512));
        }
    }
}

SoakOptions readOptions(CommandLine& commandLine) {
    SoakOptions options;
    readGameOptions(commandLine, options);
    options.engine = commandLine.takeOption("--engine").value_or("");
    options.records = commandLine.takeOption("--records").value_or(options.records);
    options.state = commandLine.takeOption("--state").value_or("");
    options.first = takeNumber(commandLine, "--first", 0, 1000000).value_or(0);
    options.jobs = takeNumber(commandLine, "--jobs", 1, 1000).value_or(1);
    options.pause = takeNumber(commandLine, "--pause", 0, 10000).value_or(0);
    const std::vector<std::string> rest = commandLine.takeRest();
    if (rest.size() != 1 || options.engine.empty()) {
        throw UsageError("how many games, of which --engine?");
    }
    options.games = parseNumber(rest[0], "GAMES", 1, 1000000);
    options.isStopWanted = [] { return isInterrupted.load(); };
    return options;
}

std::string toClockText(std::chrono::seconds span) {
    const auto minutes = std::chrono::floor<std::chrono::minutes>(span);
    const auto seconds = (span - minutes).count();
    return std::to_string(minutes.count()) + (seconds < 10 ? ":0" : ":") + std::to_string(seconds);
}

// `elapsed` is the time of this run.
std::string getProgressText(const SoakReport& soFar, int wanted, std::chrono::seconds elapsed) {
    const auto played = std::max(soFar.games - soFar.resumed, 1);
    const auto seconds = std::max<std::chrono::seconds::rep>(elapsed.count(), 1);
    // Games of the state file that are not among the wanted ones make this too short.
    const auto left = std::max(wanted - soFar.games, 0);
    return "game " + std::to_string(soFar.games) + " of " + std::to_string(wanted) + ", " +
           std::to_string(soFar.plies) + " plies, " + std::to_string(soFar.countFaults()) +
           " faults, " + std::to_string(played * 60 / seconds) + " games a minute, " +
           toClockText(std::chrono::seconds(left * seconds / played)) + " left";
}

SoakReport playAll(const SoakOptions& options, const std::function<std::chrono::seconds()>& age) {
    Progress progress;
    try {
        return runSoak(options, [&](const SoakReport& soFar) {
            progress.show(getProgressText(soFar, options.games, age()));
        });
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
    raiseFileLimit(); // each engine needs three pipes
    const auto began = std::chrono::steady_clock::now();
    const auto age = [began] {
        return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() -
                                                                began);
    };
    const SoakReport report = playAll(options, age);
    writeReport(std::cout, report, age());
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
    return runTool("kestran-soak", HELP, argc, argv, run);
}
