#include "kestran-bench/bench.h"

#include "kestran-bench/benchReport.h"
#include "kestran-bench/solve.h"
#include "search/hashTable.h"
#include "search/statistics.h"
#include "support/cli.h"
#include "support/gameInput.h"
#include "support/requireTable.h"
#include "support/settings.h"
#include "support/terminal.h"

#include <iostream>
#include <limits>
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
    SolveLimits limits;       // in place of a depth
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
    const auto add = [&](const std::string& fen, const Position& position, int depth) {
        positions.push_back({fen, position, options.depth.value_or(depth)});
    };
    if (options.path) {
        for (const EpdRecord& record : readEpdFile(*options.path)) {
            add(record.fen, record.position, DEFAULT_FILE_DEPTH);
        }
    } else if (options.pgn.path) {
        const NumberedGame game = readPgnGame(options.pgn);
        add(getWholeFen(game), game.position, DEFAULT_FILE_DEPTH);
    } else {
        for (const auto& [fen, depth] : getBenchPositions()) {
            add(fen, readGame({fen}, "").position, depth);
        }
    }
    return positions;
}

// Searches everything once. The last run prints each search.
void runOnce(const BenchOptions& options, const EngineConfig& config, int run,
             std::vector<BenchedPosition>& positions) {
    Progress progress;
    const bool isLast = run + 1 == options.runs;
    const std::string total = std::to_string(positions.size() * at(options.runs));
    TestStatistics* const statistics = options.withStatistics ? &testStatistics : nullptr;
    std::size_t number = 0;
    for (BenchedPosition& position : positions) {
        ++number;
        progress.show("search " + std::to_string(at(run) * positions.size() + number) + " of " +
                      total);
        testStatistics.reset();
        addRun(position, searchAfresh(config, position.position, position.depth, statistics));
        progress.show("");
        if (isLast && !options.asJson) {
            printPosition(number, position, std::cout);
        }
        if (isLast && options.withStatistics) {
            testStatistics.printAll(std::cout);
        }
    }
}

// Searches to depths, and returns the report.
Json searchAll(const BenchOptions& options, const EngineConfig& config) {
    std::vector<BenchedPosition> positions = readPositions(options);
    for (int run = 0; run < options.runs; ++run) {
        runOnce(options, config, run, positions);
    }
    return toJson(positions, options.hashMebibytes);
}

// Searches within limits, and returns the report.
Json solveAll(const BenchOptions& options, const EngineConfig& config) {
    const std::vector<Puzzle> puzzles = readPuzzles(*options.path);
    std::vector<Solution> solutions;
    Progress progress;
    for (const Puzzle& puzzle : puzzles) {
        progress.show("position " + std::to_string(solutions.size() + 1) + " of " +
                      std::to_string(puzzles.size()));
        solutions.push_back(solve(puzzle, options.limits, config));
        progress.show("");
        if (!options.asJson) {
            printSolution(solutions.size(), solutions.back(), std::cout);
        }
    }
    return toJson(solutions, options.limits, options.hashMebibytes);
}

int runBench(const BenchOptions& options) {
    const auto config = EngineConfig::getProdConfig();
    config->hashTableSize = entriesOf(options.hashMebibytes);
    applySettings(options.settings, *config);
    const bool isSolving = options.limits.time || options.limits.nodes;
    const Json report = isSolving ? solveAll(options, *config) : searchAll(options, *config);
    if (options.asJson) {
        printJson(report, std::cout);
    } else if (isSolving) {
        std::cout << "Solved: " << report["solved"] << " of " << report["counted"] << '\n';
    } else {
        printSummary(report, std::cout);
    }
    return 0;
}

} // namespace

SearchResult searchAfresh(const EngineConfig& config, const Position& position, int depth,
                          TestStatistics* statistics) {
    const auto engine = makeFreshEngine(config);
    requireTable(engine->getHashTableSize(), config.hashTableSize);
    engine->init(position);
    if (statistics != nullptr) {
        engine->getTreeGenerator().countIn(*statistics);
    }
    return engine->searchDepth(depth, false);
}

int benchMain(int argc, const char* const* argv) {
    BenchOptions options;
    Program program("kestran-bench", "[OPTION]...", DESCRIPTION, FAILURE);
    program.addNumber("--depth", options.depth, 1, MAX_PASSES, "N",
                      "search every position N plies deep");
    program.addNumber("--hash", options.hashMebibytes, EngineConfig::HASH_MIN,
                      EngineConfig::HASH_MAX, "MIB", "size of the hash table in mebibytes");
    program.addText("--epd", options.path, "FILE",
                    "search the positions of a file instead, " +
                        std::to_string(DEFAULT_FILE_DEPTH) +
                        " plies deep by default: one per line, four or six fields of FEN, "
                        "then operations such as \"bm Nf3;\"");
    addPgnOptions(program, options.pgn);
    program.excludes("--epd", {"--pgn"});
    program.addNumber("--repeat", options.runs, 1, MAX_REPEATS, "N",
                      "search everything N times and print the median of time and speed, with "
                      "minimum and maximum in brackets");
    addSettings(program, options.settings);
    program.addFlag("--stats", options.withStatistics,
                    "print the counters of every pass after each position");
    program.addSeconds("--time", options.limits.time, MAX_SECONDS,
                       "search each position of the EPD file for S seconds, and count those that "
                       "are solved: by a move of \"bm\", and by none of \"am\"");
    program.addNumber("--nodes", options.limits.nodes, 1, std::numeric_limits<int>::max(), "N",
                      "the same with N nodes for each position");
    for (const char* limit : {"--time", "--nodes"}) {
        program.needs(limit, "--epd");
        program.excludes(limit, {"--depth", "--repeat", "--stats"});
    }
    program.addFlag("--json", options.asJson, "print one JSON object instead of text");
    program.excludes("--json", {"--stats"});
    return program.run(argc, argv, [&] { return runBench(options); });
}
