// Key, move code and static score of the plain search, computed from the pieces and from the tables
// of the engine.
#pragma once

#include "board/pieceSquareTables.h"
#include "board/zobristNumbers.h"
#include "support/plainRules.h"

#include <array>
#include <cstdint>

namespace plain {

// Worth of a piece by its type.
inline constexpr std::array<int, 7> VALUES = {0, 1000, 5000, 3000, 3100, 9500, 0};

// The code of 16 bits, in which castling is the king's move onto its rook.
inline int codeOf(const Move& move) {
    constexpr std::array<int, 6> promotions = {0, 0, 3, 1, 2, 4};
    const int target = move.isCastle() ? ROOK_FROM[at(move.flag - 1)] : move.to;
    return fileOf(target) + 8 * rowOf(target) + 64 * fileOf(move.from) + 512 * rowOf(move.from) +
           4096 * promotions[at(move.promotion)];
}

inline std::uint64_t keyOf(const Position& position) {
    constexpr std::array<int, 7> kinds = {0, 0, 6, 2, 4, 8, 10};
    constexpr std::array<int, 4> rights = {769, 768, 771, 770};
    std::uint64_t key = position.side == WHITE ? ZobristRandomArray[780] : 0;
    for (int i = 0; i < 32; ++i) {
        const auto [type, field] = position.pieces[at(i)];
        const int kind = kinds[at(type)] + (i < 16 ? 1 : 0);
        const int number = (kind * 8 + rowOf(field)) * 8 + fileOf(field);
        key ^= type != NONE ? ZobristRandomArray[at(number)] : 0;
    }
    for (int i = 0; i < 4; ++i) {
        key ^= position.castles[at(i)] ? ZobristRandomArray[at(rights[at(i)])] : 0;
    }
    return position.canTakePassed() ? key ^ ZobristRandomArray[at(772 + fileOf(position.passed))]
                                    : key;
}

// The static score is the sum of materialOf() and positionalOf(), for the side that is not to move.
inline int materialOf(const Position& position) {
    int sum = 0;
    for (int i = 0; i < 32; ++i) {
        sum += VALUES[at(position.pieces[at(i)].type)] * (i / 16 == position.side ? -1 : 1);
    }
    return sum;
}

inline int bonusOf(const Position& position, int colour) {
    const auto isFar = [=](int field) { return colour == WHITE ? field > 80 : field < 39; };
    int bishops = 0;
    int farRooks = 0;
    for (int i = 16 * colour; i < 16 * colour + 16; ++i) {
        const auto [type, field] = position.pieces[at(i)];
        bishops += type == BISHOP ? 1 : 0;
        farRooks += type == ROOK && isFar(field) ? 1 : 0;
    }
    const bool isShutIn = farRooks > 0 && isFar(position.pieces[at(16 - 16 * colour)].field);
    return (bishops > 1 ? 10 : 0) + (!isShutIn ? 0 : farRooks > 1 ? 35 : 10);
}

inline int positionalOf(const Position& position) {
    int all = 0;
    for (const Piece& piece : position.pieces) {
        all += VALUES[at(piece.type)];
    }
    int sum = bonusOf(position, WHITE) - bonusOf(position, BLACK);
    for (int i = 0; i < 32; ++i) {
        const auto colour = static_cast<::Color>(i / 16);
        const auto field = static_cast<::FieldIndex>(position.pieces[at(i)].field);
        const int type = position.pieces[at(i)].type;
        if (type == PAWN) {
            sum += pawnsOpeningMiddleGame[colour][field];
        } else if (type == KNIGHT) {
            sum += knightsPositionTable[colour][field];
        } else if (type == BISHOP) {
            sum += bishopPosition[colour][field];
        } else if (type == KING && all <= 26200) {
            sum += kingEndGame[colour][field];
        } else if (type == KING) {
            sum += kingOpening[field] * (i < 16 ? 1 : -1);
        }
    }
    return position.side == WHITE ? -sum : sum;
}

} // namespace plain
