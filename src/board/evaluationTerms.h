// Every term of the static evaluation, in thousandths of a pawn.
//
// The score is the balance of material plus two kinds of terms: values of a piece on its square,
// which PieceSum adds up from move to move, and bonuses, which depend on counts in that sum. A term
// of the first kind belongs in PieceSum's constructor. One of the second kind belongs in bonusOf(),
// and quietGainBound() must cover it: the quiescence search skips moves by that bound.
#pragma once

#include "board/pieceSquareTables.h"

#include <algorithm>
#include <cstdint>

// ---- Material ----

// Value of a piece.
inline constexpr ByType<int> pieceEvaluationValues = {0, 1000, 5000, 3000, 3100, 9500, 0};

// The position is an end game if the pieces of both sides are worth at most this.
inline constexpr int END_GAME_MAX_MATERIAL = 26200;

constexpr bool isEndGame(int totalMaterial) {
    return totalMaterial <= END_GAME_MAX_MATERIAL;
}

// ---- Pieces on their squares ----

// The piece-square sums of a set of pieces for both phases, good for White if positive, and the
// counts that the bonuses need. All are packed into one word, so that one addition or subtraction
// updates everything. A sum fits in 16 bits, because each of 32 pieces adds less than 40; a count
// has room for 15 pieces.
class PieceSum {
public:
    constexpr PieceSum() = default;
    // The contribution of one piece.
    constexpr PieceSum(Color color, PieceType type, FieldIndex field);

    constexpr PieceSum& operator+=(PieceSum other) {
        word += other.word;
        return *this;
    }
    constexpr PieceSum& operator-=(PieceSum other) {
        word -= other.word;
        return *this;
    }
    constexpr bool operator==(const PieceSum&) const = default;

    constexpr int getMiddleGame() const { return static_cast<std::int16_t>(word); }
    constexpr int getEndGame() const { return static_cast<std::int16_t>((word + (1 << 15)) >> 16); }
    constexpr int getBishops(Color color) const { return getCount(BISHOPS + 4 * color); }
    // Rooks of a colour on their last two ranks.
    constexpr int getAdvancedRooks(Color color) const { return getCount(ROOKS + 4 * color); }
    // Whether the king of a colour is on its first two ranks.
    constexpr bool isKingBack(Color color) const { return getCount(KINGS + 4 * color) != 0; }
    // Whether there are two bishops of a colour, or an advanced rook.
    constexpr bool canHaveBonus() const {
        return ((word + (std::uint64_t{1} << 31)) &
                ((std::uint64_t{0xEE} << BISHOPS) | (std::uint64_t{0xFF} << ROOKS))) != 0;
    }

private:
    // Bit positions of the counts, four bits each, White's first. The sums fill the lower half.
    static constexpr int BISHOPS = 32;
    static constexpr int ROOKS = 40;
    static constexpr int KINGS = 48;

    // A negative sum has borrowed from the counts; adding 2^31 undoes that.
    constexpr int getCount(int place) const {
        return static_cast<int>((word + (std::uint64_t{1} << 31)) >> place & 15);
    }
    constexpr void addSums(int middleGame, int endGame) {
        word += static_cast<std::uint64_t>(middleGame + std::int64_t{endGame} * (1 << 16));
    }
    constexpr void addCount(int place) { word += std::uint64_t{1} << place; }

    std::uint64_t word = 0;
};

// Whether a square is on the last two ranks, as seen by a colour.
constexpr bool isOnLastTwoRanks(FieldIndex field, Color color) {
    return color == WHITE ? field >= A7 : field <= H2;
}

constexpr PieceSum::PieceSum(Color color, PieceType type, FieldIndex field) {
    const auto addBoth = [&](int value) { addSums(value, value); };
    switch (type) {
    case PAWN:
        addBoth(pawnsOpeningMiddleGame[color][field]);
        break;
    case ROOK:
        if (isOnLastTwoRanks(field, color)) {
            addCount(ROOKS + 4 * color);
        }
        break;
    case KNIGHT:
        addBoth(knightsPositionTable[color][field]);
        break;
    case BISHOP:
        addBoth(bishopPosition[color][field]);
        addCount(BISHOPS + 4 * color);
        break;
    case KING:
        addSums(color == WHITE ? kingOpening[field] : -kingOpening[field],
                kingEndGame[color][field]);
        if (isOnLastTwoRanks(field, opposite(color))) {
            addCount(KINGS + 4 * color);
        }
        break;
    default:
        break;
    }
}

// The contribution of each piece on each square.
inline constexpr auto pieceSums = [] {
    ByColor<ByType<ByField<PieceSum>>> sums{};
    for (const Color color : COLORS) {
        for (int type = PAWN; type <= KING; ++type) {
            const auto pieceType = static_cast<PieceType>(type);
            for (const FieldIndex field : BOARD_FIELDS) {
                sums[color][pieceType][field] = PieceSum(color, pieceType, field);
            }
        }
    }
    return sums;
}();

// ---- Bonuses ----

// For a pair of bishops or more.
inline constexpr int BISHOP_PAIR_BONUS = 10;
// For the first rook on its last two ranks, and for all further ones together, while the enemy king
// is on these ranks too.
inline constexpr int ADVANCED_ROOK_BONUS = 10;
inline constexpr int SECOND_ADVANCED_ROOK_BONUS = 25;

// The sum of the bonuses of a colour.
constexpr int bonusOf(PieceSum sum, Color color) {
    int bonus = sum.getBishops(color) > 1 ? BISHOP_PAIR_BONUS : 0;
    const int rooks = sum.isKingBack(opposite(color)) ? sum.getAdvancedRooks(color) : 0;
    bonus += rooks >= 1 ? ADVANCED_ROOK_BONUS : 0;
    bonus += rooks > 1 ? SECOND_ADVANCED_ROOK_BONUS : 0;
    return bonus;
}

// An upper bound on what a quiet move adds to the static score of its side. A rook that reaches its
// last two ranks may gain either rook bonus; a king that leaves its first two ranks may cost the
// enemy both.
constexpr int quietGainBound(Color color, PieceType type, FieldIndex from, FieldIndex to,
                             bool inEndGame) {
    constexpr int ROOK_BONUS = std::max(ADVANCED_ROOK_BONUS, SECOND_ADVANCED_ROOK_BONUS);
    constexpr int ROOK_BONUSES = ADVANCED_ROOK_BONUS + SECOND_ADVANCED_ROOK_BONUS;
    const PieceSum before = pieceSums[color][type][from];
    const PieceSum after = pieceSums[color][type][to];
    const bool becomesAdvanced = after.getAdvancedRooks(color) > before.getAdvancedRooks(color);
    const bool leavesBack = before.isKingBack(color) && !after.isKingBack(color);
    const int values = inEndGame ? after.getEndGame() - before.getEndGame()
                                 : after.getMiddleGame() - before.getMiddleGame();
    return (color == WHITE ? values : -values) + (becomesAdvanced ? ROOK_BONUS : 0) +
           (leavesBack ? ROOK_BONUSES : 0);
}

// ---- The score ----

// The static score for `side`. `balance` is its material minus the enemy's. `totalMaterial` is the
// material of both sides and decides the phase.
constexpr int staticScore(PieceSum sum, int balance, int totalMaterial, Color side) {
    const int values = isEndGame(totalMaterial) ? sum.getEndGame() : sum.getMiddleGame();
    const int eval =
        sum.canHaveBonus() ? values + bonusOf(sum, WHITE) - bonusOf(sum, BLACK) : values;
    return balance + (side == WHITE ? eval : -eval);
}
