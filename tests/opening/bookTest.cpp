// The opening book, its lines and its draws.
#include "opening/polyglot.h"

#include "notation/letters.h"
#include "opening/standard.h"
#include "testing/searchSupport.h"
#include "testing/toolSupport.h"

#include <gtest/gtest.h>

#include <map>

namespace {

const Position start = positionOf(START_FEN);

TEST(StandardBook, HoldsEveryMoveOfItsLines) {
    std::size_t entries = 0;
    std::uint64_t digest = 14695981039346656037U; // FNV-1a
    for (const std::string_view line : STANDARD_LINES) {
        for (const char letter : line) {
            digest = (digest ^ static_cast<unsigned char>(letter)) * 1099511628211U;
        }
        const std::size_t moves = getLineFromString(std::string(line), false).size();
        EXPECT_EQ(moves, (line.size() + 1) / 5) << line;
        entries += moves;
    }
    EXPECT_EQ(entries, 3080U);
    EXPECT_EQ(digest, 17190160648234158528U);
    EXPECT_EQ(PolyglotBook::getStandard().get(start.incremental.hash).size(), 346U);
}

TEST(StandardBook, DrawsMovesInProportionToTheirEntries) {
    const PolyglotBook& book = PolyglotBook::getStandard();
    std::map<std::string, double> counts;
    for (const PolyglotEntry& entry : book.get(start.incremental.hash)) {
        ++counts[fieldToString(entry.getFrom(), true) + fieldToString(entry.getTo(), true)];
    }
    EXPECT_EQ(counts, (std::map<std::string, double>{
                          {"d2d4", 149}, {"g1f3", 84}, {"e2e4", 60}, {"c2c4", 53}}));
    constexpr int DRAWS = 4000;
    std::map<std::string, double> drawn;
    for (int i = 0; i < DRAWS; ++i) {
        ++drawn[LongAlgebraicMove(book.getMove(start)).toString()];
    }
    for (const auto& [move, count] : counts) {
        // Six standard deviations of the most frequent move are below 0.05.
        EXPECT_NEAR(drawn[move] / DRAWS, count / 346, 0.05) << move;
    }
}

// By chance, 200 draws all give the same move once in 2^199 runs.
TEST(Book, DrawsTheFirstEntryAndTheLast) {
    PolyglotBook book;
    addLine(book, "e2e4");
    addLine(book, "d2d4");
    std::map<std::string, int> drawn;
    for (int i = 0; i < 200; ++i) {
        ++drawn[LongAlgebraicMove(book.getMove(start)).toString()];
    }
    EXPECT_EQ(drawn.size(), 2U);
}

TEST(Book, HasNoMoveForAnImpossibleEntry) {
    PolyglotBook book;
    EXPECT_EQ(book.getMove(start).from, PolyglotBook::NO_BOOK_MOVE);
    book.put(start.incremental.hash, PolyglotEntry(std::int16_t{263}));
    EXPECT_EQ(book.getMove(start).from, PolyglotBook::NO_BOOK_MOVE);
}

TEST(BookLine, EndsAtTheFirstImpossibleMove) {
    const std::tuple<const char*, std::size_t, std::size_t> cases[] = {
        // line, moves, moves with castling as king takes rook
        {"", 0, 0},
        {"e2e", 0, 0},
        {"e2e4", 1, 1},
        {"e2e4  ", 1, 1},
        {"e2e4-e7e5", 2, 2},
        {"e2e5 e7e5 g1f3", 0, 0},
        {"e2e4 xxxx g1f3", 1, 1},
        {"e2e4 e7e9 g1f3", 1, 1},
        {"e2e4 e7e5 g1f3 b8c6 f1c4 f8c5 e1g1 g8f6", 8, 6},
        {"e2e4 e7e5 g1f3 b8c6 f1c4 f8c5 e1h1 g8f6", 8, 8},
    };
    for (const auto& [line, moves, polyglotMoves] : cases) {
        EXPECT_EQ(getLineFromString(line, false).size(), moves) << line;
        EXPECT_EQ(getLineFromString(line, true).size(), polyglotMoves) << line;
    }
    const std::string opening = "e2e4 e7e5 g1f3 b8c6 f1c4 f8c5 ";
    const std::vector<HashEntryPair> pairs = getLineFromString(opening + "e1g1 g8f6", false);
    EXPECT_EQ(pairs[6].polyglotEntry.getMoveInt(), 263);
    EXPECT_EQ(pairs[7].hash, positionAfterMoves(opening + "e1g1").incremental.hash);
}

TEST(BookFile, NeedsNoLineEndAtItsEnd) {
    for (const char* ending : {"", "\n", "  \n\n"}) {
        const TextFile file(std::string("d2d4 d7d5\ne2e4 e7e5") + ending);
        const PolyglotBook book = PolyglotBook::getBookFromFile(file.path, false);
        EXPECT_EQ(book.get(start.incremental.hash).size(), 2U);
        EXPECT_EQ(book.get(positionAfterMoves("e2e4").incremental.hash).size(), 1U);
    }
    testing::internal::CaptureStderr();
    EXPECT_TRUE(PolyglotBook::getBookFromFile("", false).get(start.incremental.hash).empty());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Unable to open file");
}

} // namespace
