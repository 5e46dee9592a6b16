// The signature of the search, which a change that means no change of the search keeps.

#include "kestran-bench/bench.h"

#include <gtest/gtest.h>

namespace {

// A new signature belongs here and at the end of the commit message, as "Bench: N".
TEST(Bench, KeepsItsSignature) {
    std::int64_t nodes = 0;
    for (const BenchPosition& position : getBenchPositions()) {
        nodes += searchAfresh(position.fen, position.depth, 16).nodes;
    }
    EXPECT_EQ(nodes, 5712333);
}

} // namespace
