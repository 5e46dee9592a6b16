#include "board/perft.h"

#include "board/makeMove.h"

std::int64_t perft(Position& position, int depth, bool playsLast) {
    if (depth == 0) {
        return 1;
    }
    if (depth == 1 && !playsLast) {
        MoveArray moves;
        return generateLegalMoves(position, moves);
    }
    std::int64_t sum = 0;
    visitLegalMoves(position, [&](const Move&) { sum += perft(position, depth - 1, playsLast); });
    return sum;
}
