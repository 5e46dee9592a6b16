#include "notation/moveText.h"

#include "notation/letters.h"

#include <iostream>
#include <string_view>

namespace {

constexpr std::string_view EN_PASSANT_MARK = "(e.p)";
constexpr std::string_view EN_PASSANT_WORD = "(e.p.)";
constexpr auto SOMETHING_CAPTURED = static_cast<PieceType>(7);
constexpr auto NOT_A_FIELD = static_cast<FieldIndex>(NOT_FOUND);

// The letter of a piece type; '?' for the invalid types that parseMove() can return.
char pieceNameOf(PieceType type) {
    return NO_PIECE <= type && type <= KING ? pieceNameChars[at(type)] : '?';
}

} // namespace

void printMove(std::ostream& stream, const Move& move) {
    if (move.isCastle()) {
        const bool queenSide =
            move.castle_ep_flag == WHITE_QUEEN_SIDE || move.castle_ep_flag == BLACK_QUEEN_SIDE;
        stream << (queenSide ? "0-0-0" : "0-0");
        return;
    }
    stream << pieceNameOf(move.pieceMoved);
    printField(stream, move.from);
    stream << (move.pieceCaptured != NO_PIECE ? 'x' : '-');
    printField(stream, move.to);
    if (move.castle_ep_flag == EN_PASSANT) {
        stream << EN_PASSANT_MARK;
    }
    if (move.promotionPieceType != NO_PIECE) {
        stream << pieceNameOf(move.promotionPieceType);
    }
}

Move parseMove(const std::string& str, Color color) {
    Move move = {NOT_A_FIELD, NOT_A_FIELD, NO_PIECE, NO_PIECE, ORDINARY_MOVE, NO_PIECE};
    if (str == "0-0-0" || str == "0-0") {
        move.castle_ep_flag = castlingFlag(color == WHITE ? WHITE : BLACK, str.size() == 5);
        return move;
    }
    if (str.size() < 4) {
        return move;
    }
    move.pieceMoved =
        static_cast<PieceType>(getIndexOfChar(str[0], pieceNameChars, PAWN, KING + 1));
    move.from = parseField(str[1], str[2]);
    if (str[3] == 'x') {
        move.pieceCaptured = SOMETHING_CAPTURED;
    } else if (str[3] != '-') {
        std::cerr << "parsing error, '-' expected" << std::endl;
        return move;
    }
    if (str.size() < 6) {
        return move;
    }
    move.to = parseField(str[4], str[5]);
    if (str.size() > 6) {
        move.promotionPieceType = parseUpperPiece(str[6]);
        if (str.compare(6, EN_PASSANT_WORD.size(), EN_PASSANT_WORD) == 0) {
            move.castle_ep_flag = EN_PASSANT;
        }
    }
    return move;
}
