// What the pieces of a position add to its score, carried along from move to move in one
// word: the sums of the piece-square tables for both phases of the game, good for White if
// positive, and the counts that the bonuses ask for.
#pragma once

#include "board/pieceSquareTables.h"

#include <cstdint>

// Sums and counts of some pieces. Words are added and subtracted as a whole. There is room for
// fifteen pieces of a kind a side.
class PieceSum {
public:
    constexpr PieceSum() = default;
    // What a piece on a field adds.
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
    // Whether the king of a colour stands on its first two ranks, where rooks shut it in.
    constexpr bool isKingBack(Color color) const { return getCount(KINGS + 4 * color) != 0; }
    // Whether there are two bishops of a colour, or an advanced rook.
    constexpr bool canHaveBonus() const {
        return ((word + (std::uint64_t{1} << 31)) &
                ((std::uint64_t{0xEE} << BISHOPS) | (std::uint64_t{0xFF} << ROOKS))) != 0;
    }

private:
    // Where the counts stand, four bits each, White's first. The sums fill the lower half.
    static constexpr int BISHOPS = 32;
    static constexpr int ROOKS = 40;
    static constexpr int KINGS = 48;

    // A negative sum has borrowed from the counts.
    constexpr int getCount(int place) const {
        return static_cast<int>((word + (std::uint64_t{1} << 31)) >> place & 15);
    }
    constexpr void addSums(int middleGame, int endGame) {
        word += static_cast<std::uint64_t>(middleGame + std::int64_t{endGame} * (1 << 16));
    }
    constexpr void addCount(int place) { word += std::uint64_t{1} << place; }

    std::uint64_t word = 0;
};

// Whether a field lies on the last two ranks, as seen by a colour.
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

// What each piece on each field adds.
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
