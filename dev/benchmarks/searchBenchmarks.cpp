// The search: the order of moves, the transposition table, and a search as a whole.

#include "board/moveGenerator.h"
#include "board/setUp.h"
#include "samplePositions.h"
#include "search/engineParameters.h"
#include "search/ida.h"
#include "search/moveOrder.h"
#include "search/transpositionTable.h"
#include "search/treeGenerator.h"

#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

namespace {

constexpr int TABLE_SIZE = 1398101; // entries, 16 MiB of them
constexpr int KEYS = 1 << 16;       // spread over more of the table than a near cache holds

struct MoveList {
    MoveArray moves;
    int count;
};

std::vector<MoveList> getSampleMoves() {
    std::vector<MoveList> lists;
    for (const Position& position : getSamplePositions()) {
        MoveList& list = lists.emplace_back();
        list.count = generateMoves(position, list.moves);
    }
    return lists;
}

// Orders every list over and over with `order`, a function of a list and the place for
// the result.
template <class Order> void measureOrder(benchmark::State& state, Order order) {
    const std::vector<MoveList> lists = getSampleMoves();
    MoveIndices indices;
    std::int64_t ordered = 0;
    for (auto _ : state) {
        for (const MoveList& list : lists) {
            order(list, indices);
            benchmark::DoNotOptimize(indices);
            ordered += list.count;
        }
    }
    state.SetItemsProcessed(ordered);
}

void measureOrderMoves(benchmark::State& state) {
    const MoveOrder order;
    measureOrder(state, [&](const MoveList& list, MoveIndices& indices) {
        order.orderMoves(list.moves, indices, list.count, 1, 0);
    });
}
BENCHMARK(measureOrderMoves);

void measureOrderMovesOfQuiescence(benchmark::State& state) {
    measureOrder(state, [](const MoveList& list, MoveIndices& indices) {
        orderMoves(list.moves, indices, list.count);
    });
}
BENCHMARK(measureOrderMovesOfQuiescence);

// Calls `access` for positions that differ in nothing but their keys, on a table that
// holds them all.
template <class Access>
void measureTable(benchmark::State& state, TranspositionTable& table, Access access) {
    std::mt19937_64 random;
    std::vector<std::uint64_t> keys(KEYS);
    std::ranges::generate(keys, random);
    Position position;
    initializeToStartPosition(position);
    for (const std::uint64_t key : keys) {
        position.incremental.hash = key;
        table.addTableEntry(position, nullptr, 1, 0, -1, 1);
    }
    std::size_t next = 0;
    for (auto _ : state) {
        position.incremental.hash = keys[next];
        next = (next + 1) % keys.size();
        access(position);
    }
    state.SetItemsProcessed(state.iterations());
}

void measureTableWrite(benchmark::State& state) {
    TranspositionTable table(TABLE_SIZE);
    const Move move = {A1, H8, ROOK, NO_PIECE, ORDINARY_MOVE, NO_PIECE};
    measureTable(state, table, [&](const Position& position) {
        table.addTableEntry(position, &move, 1, 0, -1, 1);
    });
}
BENCHMARK(measureTableWrite);

void measureTableRead(benchmark::State& state) {
    TranspositionTable table(TABLE_SIZE);
    int evaluation = 0;
    measureTable(state, table, [&](const Position& position) {
        benchmark::DoNotOptimize(table.useTableEntry(position, 1, evaluation));
        benchmark::DoNotOptimize(evaluation);
    });
}
BENCHMARK(measureTableRead);

void measureSearch(benchmark::State& state) {
    EngineConfig config = *EngineConfig::getProdConfig();
    config.hashTableSize = TABLE_SIZE;
    std::int64_t nodes = 0;
    for (auto _ : state) {
        state.PauseTiming(); // to build an engine takes as long as a short search
        auto ida = std::make_unique<Ida>(config);
        SearchRequest request;
        request.limits.depth = 3;
        request.limits.useBook = false;
        request.game.position = getSamplePositions().front();
        state.ResumeTiming();
        nodes += ida->generateTree(request).report->nodesSearched;
        state.PauseTiming();
        ida.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(nodes);
}
BENCHMARK(measureSearch)->Unit(benchmark::kMillisecond);

} // namespace
