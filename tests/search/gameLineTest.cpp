#include "search/gameLine.h"

#include "base/cppIoUtils.h"
#include "search/ida.h"
#include "testing/searchSupport.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>

namespace {

// The game that continues from a position with some moves.
Game gameFrom(const std::string& fen, const std::string& moves) {
    Game game = {positionOf(fen), {positionOf(fen).incremental.hash}};
    for (const std::string& word : splitString(moves)) {
        play(game.position, word);
        game.repetitionHashes.push_back(game.position.incremental.hash);
    }
    return game;
}

Variant lineFrom(Position position, const std::string& moves) {
    std::vector<Move> played;
    for (const std::string& word : splitString(moves)) {
        played.push_back(moveOf(position, word));
        play(position, word);
    }
    Variant line;
    for (std::size_t i = played.size(); i-- > 0;) {
        line.extend(Variant(line), {played[i], false, false, false});
    }
    line.evaluation = 7;
    return line;
}

TEST(GameLine, IsCutAfterTheMoveThatEndsTheGame) {
    const std::string CIRCLE = " g1f3 g8f6 f3g1 f6g8";
    const std::string KINGS = "7k/8/8/8/8/8/R7/K7 w - - ";
    const std::vector<std::array<std::string, 4>> cases = {
        // FEN, game, line, line after the cut
        {START_FEN, "", CIRCLE + CIRCLE + " e2e4 e7e5", CIRCLE + CIRCLE},
        {START_FEN, CIRCLE, CIRCLE + " e2e4", CIRCLE},
        {START_FEN, CIRCLE, " g1f3 g8f6 f3g1", " g1f3 g8f6 f3g1"},
        // The fiftieth move of both sides; a pawn move begins anew.
        {KINGS + "98 80", "", " a2b2 h8g8 a1a2", " a2b2 h8g8"},
        {KINGS + "97 80", "", " a2b2 h8g8 a1a2 g8h8", " a2b2 h8g8 a1a2"},
        {"7k/8/8/8/8/8/P7/K7 w - - 99 80", "", " a2a3 h8g8", " a2a3 h8g8"},
        {"6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", "", " a1a8", " a1a8"},
    };
    for (const auto& [fen, moves, line, cut] : cases) {
        const Game game = gameFrom(fen, moves);
        Variant variant = lineFrom(game.position, line);
        cutAtGameEnd(game, variant);
        EXPECT_EQ(movesTextOf(variant), cut) << fen << moves;
        EXPECT_EQ(variant.evaluation, 7);
    }
}

// Each line is cut short by hand; the search finds a rest of the same length.
TEST(GameLine, OfAMateIsCompleted) {
    const EngineConfig config = makeConfig();
    Ida ida(config);
    int completed = 0;
    int stopped = 0;
    for (const char* fen :
         {"r6k/6pp/8/6N1/2Q5/8/1q4PP/6K1 w - - 0 30", "7k/R7/6K1/8/8/8/8/8 b - - 0 1",
          "8/8/8/8/8/3k4/7r/3K4 b - - 0 1", "k7/8/1K6/8/8/8/8/7R b - - 0 1"}) {
        const SearchRequest request = requestFor(positionOf(fen), limitsOf(8));
        const Variant whole = ida.generateTree(request).line;
        ASSERT_TRUE(isMate(whole.evaluation)) << fen;
        for (int kept = 1; kept < whole.varLength; ++kept) {
            Variant line = whole;
            std::copy(whole.variantMoves.begin() + whole.varLength - kept,
                      whole.variantMoves.begin() + whole.varLength, line.variantMoves.begin());
            line.varLength = kept;
            Variant same = line;
            Ida::completeMate(config, request.game, same, [] { return true; });
            stopped += same.varLength == kept ? 1 : 0;
            Ida::completeMate(config, request.game, line, [] { return false; });
            EXPECT_EQ(line.varLength, -MATED_EVALUATION - std::abs(line.evaluation)) << fen;
            EXPECT_EQ(line.evaluation, whole.evaluation);
            Position position = request.game.position;
            for (int i = 0; i < line.varLength; ++i) {
                position = positionAfter(position, line.get(i).move);
            }
            EXPECT_TRUE(legalMovesOf(position).empty()) << fen << movesTextOf(line);
            ++completed;
        }
    }
    EXPECT_GE(completed, 3);
    EXPECT_GE(stopped, 1);
}

} // namespace
