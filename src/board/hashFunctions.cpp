#include "board/hashFunctions.h"

std::uint64_t getPiecesHash(const Position& position) {
    std::uint64_t hash = 0;
    for (const Color color : COLORS) {
        for (int i = PiecesStart[color]; i < PiecesEnd[color]; ++i) {
            if (position.pieces[i].pieceType != NO_PIECE) {
                hash ^= getPieceHash(position.pieces[i], color);
            }
        }
    }
    return hash;
}

std::uint64_t getCastlesHash(const Position& position) {
    std::uint64_t hash = 0;
    for (int right = 0; right < CASTLES; ++right) {
        if (position.incremental.castles[right]) {
            hash ^= getCastleHash(right);
        }
    }
    return hash;
}

std::uint64_t getPositionZobristHash(const Position& position) {
    return getPiecesHash(position) ^ getCastlesHash(position) ^ getEpHash(position) ^
           getMoveHash(position);
}
