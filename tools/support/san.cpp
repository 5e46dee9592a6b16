#include "support/san.h"

#include "board/attacks.h"
#include "board/makeMove.h"
#include "notation/letters.h"

#include <algorithm>

namespace {

// What a piece's move needs to be told from those of its like to the same field.
std::string disambiguation(const Position& position, const Move& move) {
    MoveArray moves;
    const int count = generateLegalMoves(position, moves);
    bool isAmbiguous = false;
    bool sharesFile = false;
    bool sharesRow = false;
    for (int i = 0; i < count; ++i) {
        const Move& other = moves[i];
        if (other.isCastle() || other.pieceMoved != move.pieceMoved || other.to != move.to ||
            other.from == move.from) {
            continue;
        }
        isAmbiguous = true;
        sharesFile = sharesFile || fileOf(other.from) == fileOf(move.from);
        sharesRow = sharesRow || rowOf(other.from) == rowOf(move.from);
    }
    const std::string field = fieldToString(move.from, true);
    if (!isAmbiguous) {
        return "";
    }
    if (!sharesFile) {
        return field.substr(0, 1);
    }
    return sharesRow ? field : field.substr(1);
}

std::string withoutCheckSign(const Position& position, const Move& move) {
    if (move.isCastle()) {
        const bool isQueenSide =
            move.castle_ep_flag == WHITE_QUEEN_SIDE || move.castle_ep_flag == BLACK_QUEEN_SIDE;
        return isQueenSide ? "O-O-O" : "O-O";
    }
    std::string text = move.pieceCaptured != NO_PIECE ? "x" : "";
    text += fieldToString(move.to, true);
    if (move.pieceMoved != PAWN) {
        return pieceNameCharsUpper[at(move.pieceMoved)] + disambiguation(position, move) + text;
    }
    if (move.pieceCaptured != NO_PIECE) {
        text = fieldToString(move.from, true).substr(0, 1) + text;
    }
    if (move.promotionPieceType != NO_PIECE) {
        text += {'=', pieceNameCharsUpper[at(move.promotionPieceType)]};
    }
    return text;
}

} // namespace

std::string toSan(const Position& position, const Move& move) {
    const std::string text = withoutCheckSign(position, move);
    const Position after = positionAfter(position, move);
    if (!isInCheck(after)) {
        return text;
    }
    return text + (isInMate(after) ? '#' : '+');
}

std::string moveNumber(Color color, int ply) {
    // Black's first move is the second half of number 1, also at the very beginning.
    const int rootColor = (color + ply) % 2;
    return std::to_string((ply + rootColor) / 2 + 1) + (color == WHITE ? "." : "...");
}

std::string toNumberedSan(const Position& position, const Move& move, int ply) {
    return moveNumber(position.colorToMove, ply) + ' ' + toSan(position, move);
}

std::string lineToSan(Position position, std::span<const Move> moves, int ply) {
    std::string text;
    for (std::size_t i = 0; i < moves.size(); ++i, ++ply) {
        const bool isNumbered = i == 0 || position.colorToMove == WHITE;
        text += i == 0 ? "" : " ";
        text += isNumbered ? toNumberedSan(position, moves[i], ply) : toSan(position, moves[i]);
        position = positionAfter(position, moves[i]);
    }
    return text;
}
