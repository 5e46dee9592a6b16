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
constexpr const char* GAME = "[White \"A\"]\n\n1. e4! {a comment} e5 2. Qh5 Nc6 3. Qg5 a6 "
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
    ASSERT_EQ(review.costliest.size(), 5U);
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
    const PgnGame game = readGame();
    const Move best = game.moves[0].move;
    for (const auto& [before, after, cost, glyph] : {std::tuple(300, -400, 700, 6),
                                                     {300, 400, 0, 0},
                                                     {30000, 9000, 1000, 2},
                                                     {-9000, -30000, 1000, 2},
                                                     {499, 0, 499, 0},
                                                     {500, 0, 500, 6},
                                                     {2999, 0, 2999, 2},
                                                     {0, -3000, 3000, 4}}) {
        const ReviewedMove move = {0, best, before, after, {}, 1};
        EXPECT_EQ(move.getCost(), cost) << before;
        EXPECT_EQ(annotate(game, {{move}, {}}).moves[0].nag, glyph) << cost;
    }
    EXPECT_EQ((ReviewedMove{0, best, 3000, 0, {best}, 1}.getCost()), 0) << "the best move";
    // Only what answers the move itself refutes it.
    const Answer answer = {
        .verdict = "Never tried.", .pass = 0, .node = 0, .refutationNode = 0, .refutation = {best}};
    EXPECT_EQ(annotate(game, {{}, {{0, answer}}}).moves[0].comment, "a comment. Never tried.");
}

TEST(Review, ScoresTheEndOfTheGame) {
    for (const auto& [text, score] :
         {std::pair("[FEN \"6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1\"]\nRa8 1-0", "#1"),
          {"[FEN \"r5k1/8/8/8/8/8/5PPP/6K1 b - - 0 1\"]\nRa1 0-1", "#-1"},
          {"[FEN \"7k/8/6K1/8/8/8/8/5Q2 w - - 0 1\"]\nQf7 1/2-1/2", "+0.00"}}) {
        const PgnGame game = PgnReader(text).next().value();
        const Review review = reviewGame(makeConfig(), game, 2000, [](const ReviewedMove&) {});
        EXPECT_TRUE(annotate(game, review).moves[0].comment.starts_with(score)) << text;
    }
}

TEST(Review, ComesAsPgnFromTheCommandLine) {
    const TextFile file(std::string("1. d4 *\n") + GAME);
    const auto annotated = [&](std::vector<std::string> words) {
        words.insert(words.begin(), {"--annotate", "--pgn", file.path, "--game", "2"});
        return runBody(explainMain, words);
    };
    const ToolRun run = annotated({"--nodes=2000", "--hash=1"});
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(annotated({"--nodes=8000", "--hash=1"}).output, run.output);
    EXPECT_NE(annotated({"--nodes=2000", "--hash=0"}).output, run.output);
    EXPECT_NE(annotated({"--nodes=2000", "--hash=1", "--set=QuiscenceMaxDepth=0"}).output,
              run.output);
    const TestFolder folder;
    EXPECT_EQ(annotated({"--nodes=2000", "--hash=1", "-o", folder.path + "/game"}).output, "");
    std::ifstream written(folder.path + "/game");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(written), {}), run.output);
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
