#include "board/boardRepresentationUtils.h"

#include "board/hashFunctions.h"
#include "board/moveGenerator.h"

#include <cstdlib>
#include <iostream>

namespace {

bool isOnBoard(int index) {
    const int column = index % ROW_STEP;
    return FIRST_FIELD <= index && index <= LAST_FIELD && column != 0 && column != 9;
}

bool belongsTo(Color color, int listIndex) {
    return PiecesStart[at(color)] <= listIndex && listIndex < PiecesEnd[at(color)];
}

std::string findInMailbox(const Position& position) {
    for (int index = 0; index < BOARD_SIZE; ++index) {
        const Field& field = position.board[at(index)];
        const auto where = [index] { return " on field " + std::to_string(index); };
        if (field.color < WHITE || field.color > BORDER ||
            isOnBoard(index) == (field.color == BORDER)) {
            return "border and board are mixed up" + where();
        }
        if (field.color > BLACK) {
            continue;
        }
        if (!belongsTo(field.color, field.pieceIndexInList)) {
            return "the list index lies outside its colour's range" + where();
        }
        const Piece& piece = position.pieces[at(field.pieceIndexInList)];
        if (piece.boardPosition != index || piece.pieceType != field.pieceType) {
            return "the list entry tells another piece or place" + where();
        }
    }
    return "";
}

std::string findInList(const Position& position) {
    for (int i = 0; i < PiecesEnd[BLACK]; ++i) {
        const Piece& piece = position.pieces[at(i)];
        const auto where = [i] { return " in list entry " + std::to_string(i); };
        const bool isKing = piece.pieceType == KING;
        if (isKing != (i == KingIndex[WHITE] || i == KingIndex[BLACK])) {
            return "a king's entry holds no king, or another one does" + where();
        }
        if (piece.pieceType == NO_PIECE) {
            continue;
        }
        if (!isOnBoard(piece.boardPosition)) {
            return "a piece stands off the board" + where();
        }
        const Field& field = position.board[at(piece.boardPosition)];
        if (field.color > BLACK || !belongsTo(field.color, i) || field.pieceIndexInList != i) {
            return "the mailbox does not point back" + where();
        }
    }
    return "";
}

std::string findInDerivedValues(const Position& position) {
    for (const Color color : {WHITE, BLACK}) {
        if (position.material[at(color)] != materialForColor(position, color)) {
            return "material is off for colour " + std::to_string(color);
        }
    }
    if (position.hash != getPositionZobristHash(position)) {
        return "the key is off";
    }
    if (position.check != CHECK_UNKNOWN) {
        Position copy = position;
        copy.check = CHECK_UNKNOWN;
        if (isInCheck(copy) != (position.check == IS_CHECK)) {
            return "the check cache is wrong";
        }
    }
    return "";
}

} // namespace

bool testMoveEquality(const Move& a, const Move& b) {
    if (a.isCastle()) {
        return a.castle_ep_flag == b.castle_ep_flag;
    }
    return a.from == b.from && a.to == b.to && a.pieceMoved == b.pieceMoved &&
           a.promotionPieceType == b.promotionPieceType && a.pieceCaptured == b.pieceCaptured;
}

std::string findInconsistency(const Position& position) {
    for (const auto find : {findInMailbox, findInList, findInDerivedValues}) {
        const std::string found = find(position);
        if (!found.empty()) {
            return found;
        }
    }
    return "";
}

void requireConsistent(const Position& position) {
    const std::string found = findInconsistency(position);
    if (!found.empty()) {
        std::cerr << "inconsistent position: " << found << std::endl;
        std::abort();
    }
}
