#include "engine/bench.h"

#include "search/hashTable.h"

#include <array>
#include <cstdio>

namespace {

constexpr int HASH_MEBIBYTES = 16;

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

// Ends a search when a function says so.
class Stopper final : public StopListenerInterface {
public:
    explicit Stopper(const std::function<bool()>& _isStopped) : isStopped(_isStopped) {}

    bool checkForStop() override { return wasStopped = wasStopped || isStopped(); }

    bool wasStopped = false;

private:
    const std::function<bool()>& isStopped;
};

} // namespace

std::span<const BenchPosition> getBenchPositions() {
    return BENCH_POSITIONS;
}

std::unique_ptr<Engine> makeFreshEngine(const EngineConfig& config, const WaitPolicy& waitPolicy) {
    auto engine = std::make_unique<Engine>(config, waitPolicy);
    engine->applyChanges();
    engine->getTreeGenerator().state.table.touchPages();
    return engine;
}

std::optional<BenchTotal> runBench(std::optional<int> depth,
                                   const std::function<bool()>& isStopped) {
    const std::unique_ptr<EngineConfig> config = EngineConfig::getProdConfig();
    config->hashTableSize = entriesOf(HASH_MEBIBYTES);
    Stopper stopper(isStopped);
    BenchTotal total;
    for (const BenchPosition& position : getBenchPositions()) {
        const auto engine =
            makeFreshEngine(*config, {.interval = 1, .margin = 0, .isWokenByEnd = true});
        engine->setStopListener(&stopper);
        engine->init(position.fen);
        SearchRequest request;
        request.game = engine->getGame();
        request.limits.time = {clockMilliseconds(), TimeBudget::UNLIMITED};
        request.limits.depth = request.limits.onlyMoveDepth = depth.value_or(position.depth);
        const SearchResult result = engine->search(request);
        if (stopper.wasStopped) {
            return std::nullopt;
        }
        if (engine->getHashTableSize() == 0 || !result.report) {
            std::fputs("bench failed: not enough memory\n", stderr);
            return std::nullopt;
        }
        total.nodes += result.nodes;
        total.millis += result.time;
    }
    return total;
}
