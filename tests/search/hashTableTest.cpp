#include "search/hashTable.h"

#include "search/transpositionTable.h"
#include "testing/searchSupport.h"

#include <gtest/gtest.h>

namespace {

constexpr int SIZE = 1000; // no power of two

// A position with a key of slot 7 and the top bits `check`.
Position inSlot7(std::uint64_t check) {
    Position position = positionOf(START_FEN);
    const std::uint64_t base = check << 48;
    position.incremental.hash = base - base % SIZE + SIZE + 7;
    return position;
}

class Transpositions : public testing::Test {
protected:
    TranspositionTable transpositions{SIZE};
    HashTable<GenericEntry>& table = transpositions.getHashTable();
    const Position position = inSlot7(5);
    const Move move = moveOf(positionOf(START_FEN), "e2e4");
};

// However many there are, whoever has written them, and also when the count of clearings
// has come round.
TEST_F(Transpositions, ClearingFreesEverySlot) {
    const auto countUsed = [this] {
        int used = 0;
        for (int i = 0; i < table.getSize(); ++i) {
            used += table.getEntry(i).state != FREE ? 1 : 0;
        }
        return used;
    };
    for (const int clearings : {1, 2, 65536, 65537}) {
        transpositions.addTableEntry(position, &move, 3, 150, 100, 200);
        for (int i = 8; i < SIZE; ++i) {
            GenericEntry entry;
            entry.state = NOFAIL;
            table.getEntry(i) = entry;
        }
        EXPECT_EQ(countUsed(), SIZE - 7);
        for (int i = 0; i < clearings; ++i) {
            transpositions.clearTable();
        }
        EXPECT_EQ(countUsed(), 0) << clearings;
    }
    table.resize(5); // behind the back of the policy
    transpositions.clearTable();
    EXPECT_EQ(countUsed(), 0);
}

TEST_F(Transpositions, ResizingLosesEntriesAndTheSameSizeKeepsThem) {
    transpositions.addTableEntry(position, &move, 3, 150, 100, 200);
    transpositions.resize(SIZE);
    EXPECT_EQ(table.getEntry(7).state, NOFAIL);
    for (const int size : {0, -5}) {
        EXPECT_EQ(transpositions.resize(size), 0);
        EXPECT_TRUE(table.isEmpty());
        transpositions.addTableEntry(position, &move, 3, 150, 100, 200);
        int evaluation = 0;
        EXPECT_FALSE(transpositions.useTableEntry(position, 0, evaluation));
        transpositions.clearTable();
    }
    transpositions.resize(SIZE);
    EXPECT_EQ(table.getSize(), SIZE);
    EXPECT_EQ(table.getEntry(7).state, FREE);
}

TEST(RepetitionTable, CountsEachKeyOfASharedBucket) {
    HashTable<RepetitionEntry> table(1024);
    const unsigned long long first = 5; // a key of any unsigned 64-bit type
    const unsigned long second = 5 + 1024;
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
    EXPECT_EQ(bucket.decreaseRepetitions(second + 1024), 65535); // greater than all there
    table.resize(1024);                                          // as it is already
    EXPECT_EQ(bucket.getNumberOfRepetitions(second), 1);
    table.getEntry(6).clear();
    EXPECT_EQ(bucket.getNumberOfRepetitions(second), 1);
    bucket.clear();
    EXPECT_EQ(bucket.getNumberOfRepetitions(second), 0);
}

} // namespace
