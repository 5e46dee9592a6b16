#include "search/hashTable.h"

#include "search/transpositionTable.h"
#include "testing/searchSupport.h"

#include <gtest/gtest.h>

#include <limits>

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
    HashTable& table = transpositions.getHashTable();
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
            table.getEntry(i).state = NOFAIL;
        }
        EXPECT_EQ(countUsed(), SIZE - 7);
        EXPECT_EQ(table.getUsedPermille(), (SIZE - 7) * 1000 / SIZE);
        for (int i = 0; i < clearings; ++i) {
            transpositions.clearTable();
        }
        EXPECT_EQ(table.getUsedPermille(), 0) << clearings;
        EXPECT_EQ(countUsed(), 0) << clearings;
    }
    table.resize(5); // without the policy
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

TEST(TableSize, IsCountedInWholeEntries) {
    EXPECT_EQ(entriesOf(192), 16777216);
    EXPECT_EQ(mebibytesOf(16777216), 192);
    EXPECT_EQ(entriesOf(1), 87381);
    EXPECT_EQ(mebibytesOf(87381), 0);
    EXPECT_EQ(entriesOf(-1), 0);
    EXPECT_EQ(entriesOf(std::numeric_limits<int>::max()), 0);
    EXPECT_EQ(mebibytesOf(std::numeric_limits<int>::max()), 24575);
}

} // namespace
