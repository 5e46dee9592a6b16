#include "kestran-bench/bench.h"

#include "engine/engine.h"
#include "kestran-bench/benchReport.h"
#include "kestran-bench/freshEngine.h"
#include "kestran-bench/solve.h"
#include "notation/fen.h"
#include "search/engineParameters.h"
#include "search/statistics.h"
#include "support/cli.h"
#include "support/gameInput.h"
#include "support/settings.h"
#include "support/terminal.h"

#include <iostream>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

namespace {

constexpr int DEFAULT_HASH = 16; // mebibytes

constexpr int DEFAULT_FILE_DEPTH = 4; // plies
constexpr int MAX_REPEATS = 1000;

struct BenchOptions {
    std::optional<std::string> path; // of a file of positions, in place of the set
    PgnSource pgn;
    std::optional<int> depth; // for every position
    std::optional<Milliseconds> time;
    std::optional<int> nodes;
    int hashMebibytes = DEFAULT_HASH;
    int runs = 1;
    std::vector<std::string> settings; // of the engine
    bool withStatistics = false;
    bool asJson = false;
};

constexpr const char* DESCRIPTION =
    "Searches a fixed set of positions to fixed depths, each with empty tables, and prints depth, "
    "score, nodes, time and best move of each. A score is in thousandths of a pawn for the side "
    "to move; \"mate +3\" and \"mate -3\" mean that it mates or is mated in three moves. The last "
    "line, \"Bench: N\", is the number of nodes of all searches together: the signature of "
    "the search, which is the same on every machine.";

constexpr const char* FAILURE =
    "repeated searches differ, there is no memory, or the output cannot be written";

std::vector<BenchedPosition> readPositions(const BenchOptions& options) {
    std::vector<BenchedPosition> positions;
    if (options.path) {
        for (const EpdRecord& record : readEpdFile(*options.path)) {
            positions.push_back(
                {record.fen, record.position, options.depth.value_or(DEFAULT_FILE_DEPTH)});
        }
        return positions;
    }
    if (options.pgn.path) {
        const NumberedGame game = readPgnGame(options.pgn);
        return {{getWholeFen(game), game.position, options.depth.value_or(DEFAULT_FILE_DEPTH)}};
    }
    for (const auto& [fen, depth] : getBenchPositions()) {
        positions.push_back({.fen = fen, .depth = options.depth.value_or(depth)});
        setFenNotation(positions.back().position, fen);
    }
    return positions;
}

// Searches everything once. The last run prints each search.
void runOnce(const BenchOptions& options, int run, BenchReport& report) {
    Progress progress;
    const bool isLast = run + 1 == options.runs;
    const std::string runText = options.runs > 1 ? "run " + std::to_string(run + 1) + " of " +
                                                       std::to_string(options.runs) + ", "
                                                 : "";
    for (std::size_t i = 0; i < report.positions.size(); ++i) {
        progress.show(runText + "position " + std::to_string(i + 1) + " of " +
                      std::to_string(report.positions.size()));
        if (options.withStatistics) {
            testStatistics.reset();
        }
        BenchedPosition& benched = report.positions[i];
        const BenchResult result =
            searchAfresh(benched.position, benched.depth, options.hashMebibytes,
                         options.withStatistics ? &testStatistics : nullptr, options.settings);
        addRun(benched, result.line, result.nodes, result.millis);
        progress.show("");
        if (isLast && !options.asJson) {
            printPosition(i + 1, benched, std::cout);
        }
        if (isLast && options.withStatistics) {
            testStatistics.printAll(std::cout);
        }
    }
}

int runSolve(const BenchOptions& options) {
    const SolveOptions limits = {options.time, options.nodes, options.hashMebibytes,
                                 options.settings};
    const std::vector<Puzzle> puzzles = readPuzzles(*options.path);
    std::vector<Solution> solutions;
    Progress progress;
    for (const Puzzle& puzzle : puzzles) {
        progress.show("position " + std::to_string(solutions.size() + 1) + " of " +
                      std::to_string(puzzles.size()));
        solutions.push_back(solve(puzzle, limits));
        progress.show("");
        if (!options.asJson) {
            printSolution(solutions.size(), solutions.back(), std::cout);
        }
    }
    if (options.asJson) {
        printJson(toJson(solutions, limits), std::cout);
    } else {
        printSummary(solutions, std::cout);
    }
    return 0;
}

int runBench(const BenchOptions& options) {
    if (options.time || options.nodes) {
        return runSolve(options);
    }
    BenchReport report = {options.hashMebibytes, options.runs, readPositions(options)};
    for (int run = 0; run < options.runs; ++run) {
        runOnce(options, run, report);
    }
    if (options.asJson) {
        printJson(toJson(report), std::cout);
    } else {
        printSummary(report, std::cout);
    }
    return 0;
}

} // namespace

BenchResult searchAfresh(const Position& position, int depth, int hashMebibytes,
                         TestStatistics* statistics, const std::vector<std::string>& settings) {
    const auto fresh = std::make_unique<FreshEngine>(position, hashMebibytes, settings);
    if (statistics != nullptr) {
        fresh->engine.getTreeGenerator().countIn(*statistics);
    }
    const Milliseconds start = clockMilliseconds();
    const SearchResult result = fresh->engine.searchDepth(depth, false);
    return {result.line, result.report->nodesSearched, clockMilliseconds() - start};
}

int benchMain(int argc, const char* const* argv) {
    BenchOptions options;
    Program program("kestran-bench", "[OPTION]...", DESCRIPTION, FAILURE);
    auto* const depth = program.addNumber("--depth", options.depth, 1, MAX_PASSES, "N",
                                          "search every position N plies deep");
    program.addNumber("--hash", options.hashMebibytes, EngineConfig::HASH_MIN,
                      EngineConfig::HASH_MAX, "MIB", "size of the hash table in mebibytes");
    auto* const epd = program.addText(
        "--epd", options.path, "FILE",
        "search the positions of a file instead, " + std::to_string(DEFAULT_FILE_DEPTH) +
            " plies deep by default: one per line, four or six fields of FEN, "
            "then operations such as \"bm Nf3;\"");
    addPgnOptions(program, options.pgn);
    program.get_option("--pgn")->excludes(epd);
    auto* const repeat =
        program.addNumber("--repeat", options.runs, 1, MAX_REPEATS, "N",
                          "search everything N times and print the median of time and speed, with "
                          "minimum and maximum in brackets");
    addSettings(program, options.settings);
    auto* const stats = program.add_flag("--stats", options.withStatistics,
                                         "print the counters of every pass after each position");
    for (CLI::Option* limit :
         {program.addSeconds("--time", options.time, MAX_SECONDS,
                             "search each position of the EPD file for S seconds, and count those "
                             "that are solved: by a move of \"bm\", and by none of \"am\""),
          program.addNumber("--nodes", options.nodes, 1, std::numeric_limits<int>::max(), "N",
                            "the same with N nodes for each position")}) {
        limit->needs(epd)->excludes(depth)->excludes(repeat)->excludes(stats);
    }
    program.add_flag("--json", options.asJson, "print one JSON object instead of text")
        ->excludes(stats);
    return program.run(argc, argv, [&] { return runBench(options); });
}
