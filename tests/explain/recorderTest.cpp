// Every record of a pass follows from those below it by the rules of the search.
#include "explain/recorder.h"
#include "explain/passSearch.h"
#include "kestran-bench/bench.h"
#include "testing/searchSupport.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

constexpr int NO_RECORD = -1; // the root, as a parent

// The children of each record, and of the root, in their order.
class Tree {
public:
    explicit Tree(const std::vector<MoveRecord>& _records)
        : records(_records), children(_records.size() + 1) {
        for (std::size_t i = 0; i < records.size(); ++i) {
            const std::uint32_t parent = records[i].parent;
            EXPECT_TRUE(parent == MoveRecord::NO_PARENT || parent < i);
            children[parent == MoveRecord::NO_PARENT ? 0 : parent + 1].push_back(
                static_cast<int>(i));
        }
    }
    const std::vector<int>& getChildren(int index) const { return children[at(index + 1)]; }
    const MoveRecord& get(int index) const { return records[at(index)]; }

private:
    const std::vector<MoveRecord>& records;
    std::vector<std::vector<int>> children;
};

// The score of a node with the window `alfa`, `beta`, from the moves tried there. The window that
// each record has must be that of the moves before it.
int scoreOfNode(const Tree& tree, int node, int alfa, int beta) {
    for (const int child : tree.getChildren(node)) {
        const MoveRecord& move = tree.get(child);
        const bool isEntry = node != NO_RECORD && move.isQuiscence() &&
                             !tree.get(node).isQuiscence() && child == node + 1;
        if (isEntry && move.alfa > alfa) {
            alfa = move.alfa; // standing pat raised it
        }
        EXPECT_EQ(move.alfa, alfa);
        EXPECT_EQ(move.beta, beta);
        if (isLmfCut(move.getEnding())) {
            continue;
        }
        if (move.score >= beta) {
            EXPECT_EQ(child, tree.getChildren(node).back()) << "a move after the cut-off";
            return beta;
        }
        alfa = std::max(alfa, move.score);
    }
    return alfa;
}

// The score of a record, for the side that makes its move, as far as the rules fix it.
std::optional<int> scoreOfRecord(const Tree& tree, int index) {
    const MoveRecord& record = tree.get(index);
    const int alfa = closerToCheckMate(-record.beta);
    const int beta = closerToCheckMate(-record.alfa);
    switch (record.getEnding()) {
    case MoveEnding::SEARCHED:
        return furtherFromCheckMate(-scoreOfNode(tree, index, alfa, beta));
    case MoveEnding::CHECKMATE:
        return furtherFromCheckMate(-MATED_EVALUATION);
    case MoveEnding::REPETITION:
    case MoveEnding::CLOCK:
    case MoveEnding::STALEMATE:
        return DRAW_EVALUATION;
    default:
        return std::nullopt;
    }
}

void expectConsistent(const Tree& tree, const PassReport& pass, int count) {
    int endings = 0;
    for (int i = 0; i < count; ++i) {
        const MoveRecord& record = tree.get(i);
        const bool isSearched = record.getEnding() == MoveEnding::SEARCHED;
        EXPECT_EQ(isSearched, !tree.getChildren(i).empty()) << "record " << i;
        endings += isSearched ? 0 : 1;
        if (const auto score = scoreOfRecord(tree, i)) {
            EXPECT_EQ(record.score, *score) << "record " << i;
        }
        if (record.getEnding() == MoveEnding::STAND_PAT) {
            EXPECT_LE(record.score, record.alfa);
        }
    }
    EXPECT_GT(endings, 0);
    EXPECT_EQ(scoreOfNode(tree, NO_RECORD, pass.window.firstAlpha, pass.window.firstBeta),
              pass.line.evaluation);
}

TEST(Recorder, EachScoreFollowsFromTheScoresBelowIt) {
#ifdef KESTRAN_SLOW_BUILD
    constexpr int MAX_DEPTH = 1;
#else
    constexpr int MAX_DEPTH = 3;
#endif
    const auto config = makeConfig();
    int passes = 0;
    for (const BenchPosition& bench : getBenchPositions()) {
        SCOPED_TRACE(bench.fen);
        const SearchRequest request =
            requestFor(positionOf(bench.fen), limitsOf(std::min(bench.depth, MAX_DEPTH)));
        Ida ida(config);
        Recorder recorder;
        ida.watchBy(recorder);
        searchPasses(ida, request, nullptr, [&](const PassReport& pass) {
            const auto& records = recorder.getRecords();
            ASSERT_EQ(static_cast<std::int64_t>(records.size()), pass.nodes);
            EXPECT_TRUE(recorder.hasQuiscence());
            EXPECT_EQ(recorder.getTreePlies(), pass.depth);
            expectConsistent(Tree(records), pass, static_cast<int>(records.size()));
            ++passes;
        });
    }
    EXPECT_GE(passes, MAX_DEPTH == 1 ? 10 : 30);
}

// The records of the last pass of a search to depth 3.
std::vector<MoveRecord> recordsWith(Recorder& recorder) {
    const auto config = makeConfig();
    Ida ida(config);
    ida.watchBy(recorder);
    searchPasses(ida, requestFor(positionOf(getBenchPositions()[0].fen), limitsOf(3)), nullptr);
    return recorder.getRecords();
}

TEST(Recorder, DropsQuiescenceAndThenTheDeepestPlies) {
    Recorder whole;
    const std::vector<MoveRecord> all = recordsWith(whole);
    std::vector<int> plies;
    plies.reserve(all.size());
    for (const MoveRecord& record : all) {
        plies.push_back(record.parent == MoveRecord::NO_PARENT ? 1 : plies[record.parent] + 1);
    }
    for (const int kept : {3, 2, 1}) {
        // The moves that are kept, in their order.
        std::vector<MoveRecord> expected;
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (plies[i] <= kept) {
                expected.push_back(all[i]);
            }
        }
        Recorder recorder(expected.size() + 1);
        const std::vector<MoveRecord> records = recordsWith(recorder);
        EXPECT_FALSE(recorder.hasQuiscence());
        EXPECT_EQ(recorder.getTreePlies(), kept);
        ASSERT_EQ(records.size(), expected.size());
        for (std::size_t i = 0; i < records.size(); ++i) {
            EXPECT_EQ(records[i].score, expected[i].score);
            EXPECT_EQ(records[i].from, expected[i].from);
            EXPECT_EQ(records[i].ending, expected[i].ending);
        }
    }
}

TEST(Recorder, WritesLittleEndianRecordsAfterAHeader) {
    Recorder recorder;
    const Move promotion = moveOf(positionOf("3r3k/4P3/8/8/8/8/8/K7 w - - 0 1"), "e7d8n");
    Variant line;
    line.clear(-2);
    recorder.doMove(promotion);
    recorder.explainQuiscenceMove(256, 513, line, promotion, MoveEnding::DEEPEST_PLY);
    recorder.explainEndTreePass(IdaNS::FAILHIGH);
    std::ostringstream stream;
    writeRecords(stream, recorder, {1, IdaNS::FAILHIGH, line, 1, {3, 4}});
    const std::string text = stream.str();
    const std::vector<int> bytes(text.begin(), text.end());
    EXPECT_EQ(bytes, (std::vector<int>{1,  0,  0,  0,  1,  1,  1,  1,        3,  0,
                                       0,  0,  4,  0,  0,  0,  -2, -1,       -1, -1, //
                                       -1, -1, -1, -1, 52, 59, 9,  -128 + 6, 0,  1,
                                       0,  0,  1,  2,  0,  0,  -2, -1,       -1, -1}));
    recorder.doMove(moveOf(positionOf("4k3/8/8/8/8/8/8/4K2R w K - 0 1"), "e1g1"));
    EXPECT_EQ(recorder.getTreePlies(), 1) << "the pass that failed is repeated";
    EXPECT_EQ(recorder.getRecords().back().to, 6);
}

} // namespace
