// The review of a game.

#include "explain/review.h"
#include "kestran-explain/explain.h"
#include "notation/pgnReader.h"
#include "search/idaVariant.h"
#include "testing/searchSupport.h"
#include "testing/toolSupport.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <thread>
#include <tuple>

namespace {

// White puts the queen where Black can take it, and Black overlooks that.
constexpr const char* GAME = "[White \"A\"]\n\n1. e4 {a comment} e5 2. Qh5 Nc6 3. Qg5 a6 "
                             "4. Bc4 Bc5 5. Qxd8+ Kxd8 1-0\n";

PgnGame readGame() {
    PgnReader reader(GAME);
    return reader.next().value();
}

TEST(Review, FindsTheCostliestMovesWithReasonAndRefutation) {
    const PgnGame game = readGame();
    int count = 0;
    const Review review = reviewGame(makeConfig(), game, 20000, [&](const ReviewedMove& move) {
        EXPECT_EQ(move.ply, count);
        ++count;
    });
    EXPECT_EQ(count, 10);
    ASSERT_EQ(review.moves.size(), 10U);
    ASSERT_FALSE(review.costliest.empty());
    // 4... Bc5 overlooks the queen for the second time and lets a pawn go.
    EXPECT_EQ(review.costliest.front().ply, 7);
    EXPECT_GT(review.moves[4].getCost(), 5000);
    EXPECT_GT(review.moves[5].getCost(), 5000);
    EXPECT_LT(review.moves[0].getCost(), 500);
    for (const CostlyMove& move : review.costliest) {
        EXPECT_EQ(move.answer.node, 0);
        EXPECT_FALSE(move.answer.refutation.empty());
        EXPECT_GE(review.moves[at(move.ply)].getCost(), 500);
    }

    const PgnGame annotated = annotate(game, review);
    EXPECT_EQ(annotated.moves[4].nag, 4); // a blunder
    EXPECT_EQ(annotated.moves[0].nag, 0);
    EXPECT_NE(annotated.moves[4].comment.find("Refutation: 3... Qxg5"), std::string::npos)
        << annotated.moves[4].comment;
    EXPECT_EQ(annotated.moves[4].comment.substr(0, 2), "-9"); // for White
    EXPECT_EQ(annotated.moves[7].comment.front(), '+') << "Black's loss";
}

// In thousandths of a pawn. Beyond ten pawns nothing is won or lost.
TEST(Review, CountsTheCostUpToTenPawns) {
    for (const auto& [before, after, cost] :
         {std::tuple(300, -400, 700), {300, 400, 0}, {30000, 9000, 1000}, {-9000, -30000, 1000}}) {
        EXPECT_EQ((ReviewedMove{0, {}, before, after, {}, 1}.getCost()), cost) << before;
    }
}

TEST(Review, CountsMovesToMateFromTheMovePlayed) {
    PgnReader reader("[FEN \"6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1\"]\n1. Ra8 1-0");
    const PgnGame game = reader.next().value();
    const Review review = reviewGame(makeConfig(), game, 2000, [](const ReviewedMove&) {});
    EXPECT_EQ(annotate(game, review).moves[0].comment, "#1");
}

TEST(Review, ComesAsPgnFromTheCommandLine) {
    const TextFile file(GAME);
    const ToolRun run =
        runBody(explainMain, {"--pgn", file.path, "--annotate", "--nodes", "2000", "--hash", "1"});
    EXPECT_EQ(run.status, 0);
    PgnReader reader(run.output);
    const auto game = reader.next();
    ASSERT_TRUE(game);
    EXPECT_EQ(game->moves.size(), 10U);
    EXPECT_EQ(game->getTag("White"), "A");
    for (const PgnMove& move : game->moves) {
        EXPECT_FALSE(move.comment.empty());
    }
    EXPECT_FALSE(reader.next());
    EXPECT_FALSE(reader.getFault());
    expectRefusal(runBody(explainMain, {"--annotate"}), "--pgn");
    expectRefusal(runBody(explainMain, {"--pgn", file.path, "--annotate", "--time", "1"}),
                  "--time excludes --annotate");
}

TEST(Review, KeepsWhatItHasWhenItIsCancelled) {
    const PgnGame game = readGame();
    IdaVariant slot;
    const int id = slot.getNextThreadId();
    const auto stopAfterFour = [&](const ReviewedMove& move) {
        if (move.ply == 3) {
            slot.signalReady(id);
        }
    };
    const Review review = reviewGame(makeConfig(), game, 2000, stopAfterFour, &slot);
    EXPECT_TRUE(review.costliest.empty());
    const PgnGame annotated = annotate(game, review);
    ASSERT_EQ(annotated.moves.size(), game.moves.size());
    for (std::size_t i = 0; i < annotated.moves.size(); ++i) {
        EXPECT_EQ(annotated.moves[i].comment.empty(), i > 3) << i;
    }
}

TEST(Review, InterruptedProgramWritesTheWholeGame) {
    const TextFile file(GAME);
    for (const int signal : {SIGINT, SIGTERM}) {
        auto* const before = std::signal(signal, SIG_IGN); // until the program handles it
        std::atomic<bool> isOver = false;
        std::thread user([&] {
            while (!isOver) {
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
                std::raise(signal);
            }
        });
        const ToolRun run = runBody(explainMain, {"--pgn", file.path, "--annotate", "--nodes",
                                                  "2000000000", "--hash", "1"});
        isOver = true;
        user.join();
        std::signal(signal, before);
        EXPECT_EQ(run.status, 130);
        EXPECT_EQ(run.errors, "kestran-explain: interrupted after reviewing 0 of 10 moves\n");
        PgnReader reader(run.output);
        const auto game = reader.next();
        EXPECT_TRUE(game && game->moves.size() == 10U) << run.output;
    }
}

} // namespace
