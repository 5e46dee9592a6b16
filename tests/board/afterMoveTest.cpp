// The incremental state after a move, computed without playing it.
#include "board/afterMove.h"
#include "board/setUp.h"
#include "testing/boardSupport.h"
#include "testing/dice.h"

#include <gtest/gtest.h>

namespace {

TEST(AfterMove, MaterialAndSumAreThoseOfThePlayedMove) {
    for (const PerftLine& line : readPerftLines()) {
        const Position position = positionOf(line.fen);
        const Color mover = position.colorToMove;
        const auto balanceOf = [mover](const Position& p) {
            return p.incremental.material[mover] - p.incremental.material[opposite(mover)];
        };
        for (const Move& move : legalMovesOf(position)) {
            const Position after = positionAfter(position, move);
            const std::string text = line.fen + ' ' + LongAlgebraicMove(move).toString();
            EXPECT_EQ(getMaterialGain(move), balanceOf(after) - balanceOf(position)) << text;
            EXPECT_EQ(getTotalMaterialAfter(position, move), totalMaterial(after)) << text;
            EXPECT_EQ(getSumAfter(position, move), after.incremental.sum) << text;
        }
    }
}

struct GameSoFar {
    Position position;
    std::vector<std::uint64_t> keys = {position.incremental.hash};
    std::vector<Move> moves = {};

    bool hasHad(std::uint64_t key) const { return std::ranges::find(keys, key) != keys.end(); }
};

// Half of the time the reverse of the side's last move, to produce repetitions.
Move drawMove(const GameSoFar& game, const std::vector<Move>& legal, Dice& dice) {
    if (game.moves.size() >= 2 && dice.chance(50)) {
        const Move& last = game.moves[game.moves.size() - 2];
        const auto back = std::ranges::find_if(legal, [&last](const Move& move) {
            return !move.isCastle() && move.from == last.to && move.to == last.from;
        });
        if (back != legal.end()) {
            return *back;
        }
    }
    return dice.pickFrom(legal);
}

// getRepeatedKey() ignores en passant and the loss of castling rights. Neither may change whether
// an earlier position is found.
TEST(AfterMove, FindsExactlyTheEarlierPositionsThatAMoveRepeats) {
    constexpr int NO_DOUBLE_STEP = 3; // half-move clock before a fourth reversible move
    Dice dice(1);
    int repetitions = 0;
    int spentRights = 0;
    for (int round = 0; round < 100; ++round) {
        GameSoFar game{
            positionOf(dice.pick({"r3k2r/p6p/8/8/8/8/P6P/R3K2R w KQkq - 0 1",
                                  "r3k1nr/8/8/8/3pP3/8/8/R3K2R b KQkq e3 0 1", START_FEN}))};
        for (int ply = 0; ply < 60; ++ply) {
            const std::vector<Move> legal = legalMovesOf(game.position);
            if (legal.empty()) {
                break;
            }
            for (const Move& move : legal) {
                const Position after = positionAfter(game.position, move);
                const bool isRepeated = game.hasHad(after.incremental.hash);
                if (!canRepeatPosition(move)) {
                    EXPECT_FALSE(isRepeated) << getFen(after);
                } else if (game.position.incremental.halfMoveClock >= NO_DOUBLE_STEP) {
                    EXPECT_EQ(game.hasHad(getRepeatedKey(game.position, move)), isRepeated)
                        << getFen(after);
                    repetitions += isRepeated ? 1 : 0;
                    spentRights += after.incremental.castles.elements !=
                                           game.position.incremental.castles.elements
                                       ? 1
                                       : 0;
                }
            }
            game.moves.push_back(drawMove(game, legal, dice));
            game.position = positionAfter(game.position, game.moves.back());
            game.keys.push_back(game.position.incremental.hash);
        }
    }
    EXPECT_GT(repetitions, 100);
    EXPECT_GT(spentRights, 100);
}

} // namespace
