#include "search/hashTable.h"

#include "search/treeGenerator.h"
#include "testing/searchSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <climits>
#include <cstdlib>
#include <new>
#include <sys/resource.h>

namespace {
std::atomic<int> heapCalls = 0;
}

// Counts every allocation. Not inlined, as GCC would miss that the three belong together.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++heapCalls;
    if (void* memory = std::malloc(size)) {
        return memory;
    }
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace {

constexpr int SIZE = 1000; // no power of two

// A position with a key of slot 7 and the top bits `check`.
Position inSlot7(std::uint64_t check) {
    Position position = positionOf(START_FEN);
    const std::uint64_t base = check << 48;
    position.hash = base - base % SIZE + SIZE + 7;
    return position;
}

class TranspositionTable : public testing::Test {
protected:
    void resizeTo(int size) {
        config->hashTableSize = size;
        generator.applyChanges();
    }

    std::unique_ptr<EngineConfig> config = makeConfig(SIZE);
    TreeGenerator generator{config.get()};
    HashTable<GenericEntry>& table = generator.getHashTable();
    const Position position = inSlot7(5);
    const Move move = moveOf(positionOf(START_FEN), "e2e4");
    int evaluation = -1;
};

TEST_F(TranspositionTable, AnswersForExactScoresThatWereSearchedDeepEnough) {
    for (const auto& [value, beta, state] : {std::tuple{100, 200, FAILLOW},
                                             {101, 200, NOFAIL},
                                             {199, 200, NOFAIL},
                                             {200, 200, FAILHIGH},
                                             {100, 101, FAILLOW},
                                             {101, 101, FAILHIGH}}) {
        generator.addTableEntry(position, &move, 3, value, 100, beta);
        EXPECT_EQ(table.getEntry(7).state, state);
        evaluation = -1;
        EXPECT_FALSE(generator.useTableEntry(position, 4, evaluation));
        EXPECT_EQ(generator.useTableEntry(position, 3, evaluation), state == NOFAIL);
        EXPECT_EQ(evaluation, state == NOFAIL ? value : -1);
    }
}

TEST_F(TranspositionTable, SharedSlotIsTakenOverButKeepsItsMove) {
    generator.addTableEntry(position, &move, 9, 150, 100, 200);
    const auto clashes = table.getNumberOfInnerClashes();
    EXPECT_FALSE(generator.useTableEntry(inSlot7(6), 0, evaluation));
    EXPECT_EQ(table.getNumberOfInnerClashes(), clashes + 1);

    generator.addTableEntry(inSlot7(6), nullptr, 0, 150, 100, 200);
    EXPECT_FALSE(generator.useTableEntry(position, 0, evaluation));
    EXPECT_TRUE(generator.useTableEntry(inSlot7(6), 0, evaluation));
    generator.clearTable();
    EXPECT_EQ(table.getEntry(7).state, FREE);
    EXPECT_EQ(table.getEntry(7).checkHashProduction, 6);
    EXPECT_EQ(table.getEntry(7).moveRepresentation, 796);
}

TEST_F(TranspositionTable, ClearingFreesEverySlotHoweverManyWereWritten) {
    constexpr int LARGE = 1400000;
    resizeTo(LARGE);
    Position written = position;
    for (const int used : {10, LARGE, 10}) {
        for (int i = 0; i < used; ++i) {
            written.hash = static_cast<std::uint64_t>(LARGE - 1 - i);
            generator.addTableEntry(written, nullptr, 1, 150, 100, 200);
        }
        generator.clearTable();
        int filled = 0;
        for (int i = 0; i < LARGE; ++i) {
            filled += table.getEntry(i).state != FREE ? 1 : 0;
        }
        EXPECT_EQ(filled, 0) << used;
    }
}

TEST_F(TranspositionTable, ResizingLosesEntriesAndTheSameSizeKeepsThem) {
    generator.addTableEntry(position, &move, 3, 150, 100, 200);
    resizeTo(SIZE);
    EXPECT_EQ(table.getEntry(7).state, NOFAIL);
    for (const int size : {0, -5}) {
        resizeTo(size);
        EXPECT_TRUE(table.isEmpty());
        EXPECT_EQ(config->hashTableSize, 0);
        generator.addTableEntry(position, &move, 3, 150, 100, 200);
        EXPECT_FALSE(generator.useTableEntry(position, 0, evaluation));
        generator.clearTable();
    }
    resizeTo(SIZE);
    EXPECT_EQ(table.getSize(), SIZE);
    EXPECT_EQ(table.getEntry(7).state, FREE);
}

TEST_F(TranspositionTable, SearchGoesOnWithoutMemoryForIt) {
#ifdef KESTRAN_SLOW_BUILD
    GTEST_SKIP() << "a sanitizer needs more address space than the limit leaves";
#endif
    const auto searchWithLittleMemory = [this] {
        const rlimit limit = {rlim_t{1} << 30, rlim_t{1} << 30};
        setrlimit(RLIMIT_AS, &limit);
        resizeTo(INT_MAX);
        Position start = positionOf(START_FEN);
        Variant line;
        generator.generateTree(start, line, true);
        const bool isRight = table.isEmpty() && config->hashTableSize == 0 && line.varLength > 0;
        std::_Exit(isRight ? 0 : 1);
    };
    EXPECT_EXIT(searchWithLittleMemory(), testing::ExitedWithCode(0), "");
}

TEST(RepetitionTable, CountsEachKeyOfASharedBucket) {
    HashTable<RepetitionEntry> table(1024);
    const std::uint64_t first = 5;
    const std::uint64_t second = 5 + 1024;
    RepetitionEntry& bucket = table.getEntry(first);
    ASSERT_EQ(&bucket, &table.getEntry(second));
    EXPECT_EQ(bucket.increaseRepetitions(second), 1);
    EXPECT_EQ(bucket.increaseRepetitions(first), 1);
    EXPECT_EQ(bucket.increaseRepetitions(second), 2);
    EXPECT_EQ(bucket.getNumberOfRepetitions(first), 1);
    EXPECT_EQ(bucket.decreaseRepetitions(first), 0);
    EXPECT_EQ(bucket.decreaseRepetitions(first), 65535);
    EXPECT_EQ(bucket.getNumberOfRepetitions(first), 0);
    EXPECT_EQ(bucket.decreaseRepetitions(second), 1);
    table.getEntry(6).clear();
    EXPECT_EQ(bucket.getNumberOfRepetitions(second), 1);
    bucket.clear();
    EXPECT_EQ(bucket.getNumberOfRepetitions(second), 0);
}

TEST(RepetitionTable, CountsAPathWithoutTheHeap) {
    HashTable<RepetitionEntry> table(1024);
    const int callsBefore = heapCalls;
    for (const bool isWayDown : {true, false}) {
        for (std::uint64_t i = 0; i < 300; ++i) {
            const std::uint64_t key = i * 0x9E3779B97F4A7C15;
            RepetitionEntry& bucket = table.getEntry(key);
            ASSERT_EQ(isWayDown ? bucket.increaseRepetitions(key) : bucket.decreaseRepetitions(key),
                      isWayDown ? 1 : 0);
        }
    }
    EXPECT_EQ(heapCalls, callsBefore);
}

} // namespace
