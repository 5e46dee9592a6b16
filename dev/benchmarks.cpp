// Measures parts of the engine separately. Never fails on a slow machine.

#include "board/attacks.h"
#include "board/makeMove.h"
#include "board/moveGenerator.h"
#include "kestran-bench/bench.h"
#include "notation/fen.h"
#include "search/evaluation.h"
#include "search/moveOrder.h"
#include "search/score.h"
#include "search/transpositionTable.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <random>
#include <vector>

namespace {

constexpr int TABLE_SIZE = 1398101; // entries, 16 MiB of them
constexpr int KEYS = 1 << 16;       // spread over more of the table than a near cache holds

// Calls `work` for each position of the bench; it returns how many items it has processed.
template <class Work> void measure(benchmark::State& state, Work work) {
    std::vector<Position> positions;
    for (const BenchPosition& benchPosition : getBenchPositions()) {
        setFenNotation(positions.emplace_back(), benchPosition.fen);
    }
    std::int64_t items = 0;
    for (auto _ : state) {
        for (Position& position : positions) {
            items += work(position);
        }
    }
    state.SetItemsProcessed(items);
}

void generate(benchmark::State& state) {
    MoveArray moves;
    measure(state, [&](const Position& position) {
        const int count = generateMoves(position, moves);
        benchmark::DoNotOptimize(moves);
        return count;
    });
}
BENCHMARK(generate);

void generateAndOrder(benchmark::State& state) {
    const MoveOrder order;
    MoveArray moves;
    MoveIndices indices;
    measure(state, [&](const Position& position) {
        const int count = generateMoves(position, moves);
        order.orderMoves(moves, indices, count, 1, 0);
        benchmark::DoNotOptimize(indices);
        return count;
    });
}
BENCHMARK(generateAndOrder);

void generateAndPlay(benchmark::State& state) {
    measure(state, [](Position& position) {
        int count = 0;
        visitLegalMoves(position, [&count](const Move&) { ++count; });
        return count;
    });
}
BENCHMARK(generateAndPlay);

void lookForChecks(benchmark::State& state) {
    measure(state, [](Position& position) {
        position.check = CHECK_UNKNOWN; // otherwise the kept answer is measured
        benchmark::DoNotOptimize(isInCheck(position));
        return 1;
    });
}
BENCHMARK(lookForChecks);

void evaluate(benchmark::State& state) {
    measure(state, [](const Position& position) {
        benchmark::DoNotOptimize(totalEval(position, DEFAULT_FIRST_ALFA, DEFAULT_FIRST_BETA));
        return 1;
    });
}
BENCHMARK(evaluate);

// Writes an entry for a position and reads one for another.
void accessTable(benchmark::State& state) {
    TranspositionTable table(TABLE_SIZE);
    std::vector<std::uint64_t> keys(KEYS);
    std::ranges::generate(keys, std::mt19937_64());
    int evaluation = 0;
    std::size_t next = 0;
    measure(state, [&](Position& position) {
        position.incremental.hash = keys[next];
        table.addTableEntry(position, nullptr, 1, 0, -1, 1);
        next = (next + 1) % keys.size();
        position.incremental.hash = keys[next];
        benchmark::DoNotOptimize(table.useTableEntry(position, 1, evaluation));
        benchmark::DoNotOptimize(evaluation);
        return 1;
    });
}
BENCHMARK(accessTable);

} // namespace
