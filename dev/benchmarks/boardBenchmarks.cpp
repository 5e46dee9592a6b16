// The board: generating and playing moves, the test for check, the static score.

#include "board/attacks.h"
#include "board/makeMove.h"
#include "board/moveGenerator.h"
#include "board/perft.h"
#include "samplePositions.h"
#include "search/evaluation.h"
#include "search/score.h"
#include "search/variant.h"

#include <benchmark/benchmark.h>
#include <cstdint>
#include <vector>

namespace {

void measureGenerateMoves(benchmark::State& state) {
    const std::vector<Position> positions = getSamplePositions();
    MoveArray moves;
    std::int64_t generated = 0;
    for (auto _ : state) {
        for (const Position& position : positions) {
            generated += generateMoves(position, moves);
            benchmark::DoNotOptimize(moves);
        }
    }
    state.SetItemsProcessed(generated);
}
BENCHMARK(measureGenerateMoves);

void measureDoAndUndoMove(benchmark::State& state) {
    std::vector<Position> positions = getSamplePositions();
    std::vector<std::vector<Move>> moves;
    for (const Position& position : positions) {
        MoveArray generated;
        const int count = generateMoves(position, generated);
        moves.emplace_back(generated.begin(), generated.begin() + count);
    }
    DoMoveContext context;
    std::int64_t tried = 0;
    for (auto _ : state) {
        for (std::size_t i = 0; i < positions.size(); ++i) {
            for (const Move& move : moves[i]) {
                if (doMove(positions[i], move, context)) {
                    undoMove(positions[i], move, context);
                }
            }
            tried += static_cast<std::int64_t>(moves[i].size());
        }
        benchmark::DoNotOptimize(positions.data());
    }
    state.SetItemsProcessed(tried);
}
BENCHMARK(measureDoAndUndoMove);

void measureIsInCheck(benchmark::State& state) {
    std::vector<Position> positions = getSamplePositions();
    for (auto _ : state) {
        for (Position& position : positions) {
            position.check = CHECK_UNKNOWN; // otherwise the kept answer is measured
            benchmark::DoNotOptimize(isInCheck(position));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(positions.size()));
}
BENCHMARK(measureIsInCheck);

void measureEvaluation(benchmark::State& state) {
    const std::vector<Position> positions = getSamplePositions();
    for (auto _ : state) {
        for (const Position& position : positions) {
            benchmark::DoNotOptimize(totalEval(position, DEFAULT_FIRST_ALFA, DEFAULT_FIRST_BETA));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(positions.size()));
}
BENCHMARK(measureEvaluation);

void measurePerft3(benchmark::State& state) {
    std::vector<Position> positions = getSamplePositions();
    std::int64_t nodes = 0;
    for (auto _ : state) {
        for (Position& position : positions) {
            nodes += perft(position, 3);
        }
    }
    state.SetItemsProcessed(nodes);
}
BENCHMARK(measurePerft3)->Unit(benchmark::kMillisecond);

} // namespace
