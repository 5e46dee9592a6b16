#include "kestran-bench/bench.h"

#include "engine/engine.h"
#include "kestran-bench/benchReport.h"
#include "kestran-bench/solve.h"
#include "notation/fen.h"
#include "search/engineParameters.h"
#include "search/hashTable.h"
#include "search/statistics.h"
#include "support/cli.h"
#include "support/gameInput.h"
#include "support/requireTable.h"
#include "support/settings.h"
#include "support/terminal.h"

#include <array>
#include <iostream>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

namespace {

constexpr int DEFAULT_HASH = 16; // mebibytes

// Every depth is chosen so that the search plays 50,000 to 400,000 moves or so.
constexpr std::array BENCH_POSITIONS = {
    // Openings.
    BenchPosition{"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 4},
    BenchPosition{"r1bqk2r/ppp2ppp/2np1n2/2b1p3/2B1P3/2PP1N2/PP3PPP/RNBQK2R w KQkq - 0 6", 3},
    BenchPosition{"rnbqkb1r/1p3ppp/p2p1n2/4p3/4P3/1NN1B3/PPP2PPP/R2QKB1R b KQkq - 1 7", 3},
    BenchPosition{"rnbq1rk1/ppp2pbp/3p1np1/4p3/2PPP3/2N2N2/PP2BPPP/R1BQ1RK1 b - - 1 7", 3},
    BenchPosition{"r1b1kbnr/pp3ppp/1qn1p3/2ppP3/3P4/2P2N2/PP3PPP/RNBQKB1R w KQkq - 3 6", 2},
    BenchPosition{"rnbqkbnr/pppp1p1p/8/4N3/4PppP/8/PPPP2P1/RNBQKB1R b KQkq - 1 5", 2},
    BenchPosition{"r3kbnr/pp3ppp/2nq4/1BpQp3/2P5/8/PP1P1PPP/RNB1K2R w KQkq e6 0 11", 3},
    // Middle games: both sides to castle, open and closed centres, attacks on the king.
    BenchPosition{"r3k2r/pppq1ppp/2npbn2/2b1p3/2B1P3/2NPBN2/PPPQ1PPP/R3K2R w KQkq - 0 8", 3},
    BenchPosition{"q3k2r/3bb1p1/2n1p2p/1p1p1p2/2pPn3/2P1PN2/1PN1BPPP/2BQK2R w Kk - 0 16", 3},
    BenchPosition{"r1bqkb1r/p2n1ppp/4p1n1/1pPpP3/3P4/2P2N2/P4PPP/RNBQKB1R w KQkq - 0 12", 3},
    BenchPosition{"rnQ1qk1r/pp3pbp/6p1/8/4pN2/P5P1/1P2PP1P/R3KB1R w KQ - 4 16", 3},
    BenchPosition{"r1bqkb1r/pp3p2/2n2n1p/1B1p2pQ/3P4/2N5/PP3PPP/R1B1K1NR w KQkq - 1 11", 2},
    BenchPosition{"r1r3k1/pp3ppp/3b1n2/nBpNp3/2P5/3P4/PP3PPP/R1B1K1R1 w Q - 1 16", 4},
    BenchPosition{"r2q1rk1/pp3ppp/5n2/2bp4/Q3n1bP/4P2N/PP1N1PP1/R1B1KB1R w KQ - 0 16", 2},
    BenchPosition{"r5nr/p3bkpp/1p6/2p2n2/2P1pP2/8/PP1B2PP/RNK4R b - - 0 16", 4},
    BenchPosition{"1r2r1k1/5ppp/p2q4/3p4/3P4/P7/3Q1PPP/1R2R1K1 w - - 0 25", 5},
    // A mate in four, and a side that lives by giving check again and again.
    BenchPosition{"r6k/6pp/8/6N1/2Q5/8/1q4PP/6K1 w - - 0 30", 4},
    BenchPosition{"6k1/5p1p/5Q2/8/1q6/1r6/8/6K1 w - - 0 40", 3},
    // En passant: three ways to take, and one that exposes its own king.
    BenchPosition{"r3k3/1p1p1p2/8/P1P1P1Pp/8/8/3K4/R7 w q h6 0 30", 5},
    BenchPosition{"4k3/8/8/K1Pp3r/8/8/6PP/8 w - d6 0 40", 6},
    // Pawns about to promote.
    BenchPosition{"8/P7/8/4p3/2KnP1P1/2p1k2p/5p1P/3B4 w - - 0 56", 2},
    BenchPosition{"8/1P6/5k2/8/2p5/8/6p1/1K6 w - - 0 60", 3},
    // End games.
    BenchPosition{"r4kn1/pp2bN2/8/3pN3/8/3q4/P4PP1/R1R3K1 w - - 0 31", 4},
    BenchPosition{"8/R4p2/3b1k2/p2B4/4P2P/8/4K1r1/8 w - - 9 56", 4},
    BenchPosition{"8/4k1pR/8/5P2/p4K1P/1r6/8/8 w - - 0 56", 6},
    BenchPosition{"8/5k2/3b2p1/1p1P3p/pP5P/P1B3P1/5K2/8 b - - 0 45", 6},
    BenchPosition{"8/p1p2k2/1p1p4/3P1p2/2P2P2/1P2K3/P7/8 w - - 0 45", 6},
    BenchPosition{"8/1k6/8/8/2P5/8/3K4/8 w - - 0 60", 9},
    BenchPosition{"8/8/8/4k3/8/8/3K4/7R w - - 0 60", 5},
    // The clock of fifty moves is about to run out.
    BenchPosition{"8/8/3k4/2p1r3/2P1B3/3K4/8/8 w - - 92 90", 7},
};

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

std::unique_ptr<EngineConfig> makeConfig(int hashMebibytes,
                                         const std::vector<std::string>& settings) {
    auto config = EngineConfig::getProdConfig();
    config->hashTableSize = entriesOf(hashMebibytes);
    applySettings(settings, *config);
    return config;
}

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

std::span<const BenchPosition> getBenchPositions() {
    return BENCH_POSITIONS;
}

FreshEngine::FreshEngine(const Position& position, int hashMebibytes,
                         const std::vector<std::string>& settings, const WaitPolicy& waitPolicy)
    : config(makeConfig(hashMebibytes, settings)), engine(*config, waitPolicy) {
    engine.applyChanges();
    requireTable(engine.getHashTableSize(), config->hashTableSize);
    engine.init(position);
    engine.getTreeGenerator().state.table.touchPages();
}

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
