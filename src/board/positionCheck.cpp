#include "board/positionCheck.h"

#include "board/hashFunctions.h"
#include "board/setUp.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>

namespace {

bool belongsTo(Color color, int listIndex) {
    return PiecesStart[color] <= listIndex && listIndex < PiecesEnd[color];
}

std::string findInMailbox(const Position& position) {
    for (int index = 0; index < BOARD_SIZE; ++index) {
        const auto fieldIndex = static_cast<FieldIndex>(index);
        const Field& field = position.board[fieldIndex];
        const auto where = [index] { return " on field " + std::to_string(index); };
        if (field.color < WHITE || field.color > BORDER ||
            isOnBoard(fieldIndex) == (field.color == BORDER)) {
            return "border and board are mixed up" + where();
        }
        if (field.color > BLACK) {
            continue;
        }
        if (!belongsTo(field.color, field.pieceIndexInList)) {
            return "the list index lies outside its colour's range" + where();
        }
        const Piece& piece = position.pieces[field.pieceIndexInList];
        if (piece.boardPosition != index || piece.pieceType != field.pieceType) {
            return "the list entry has another piece or square" + where();
        }
    }
    return "";
}

std::string findInList(const Position& position) {
    for (int i = 0; i < PiecesEnd[BLACK]; ++i) {
        const Piece& piece = position.pieces[i];
        const auto where = [i] { return " in list entry " + std::to_string(i); };
        const bool isKing = piece.pieceType == KING;
        if (isKing != (i == KingIndex[WHITE] || i == KingIndex[BLACK])) {
            return "a king's entry holds no king, or another one does" + where();
        }
        if (piece.pieceType == NO_PIECE) {
            continue;
        }
        if (!isOnBoard(piece.boardPosition)) {
            return "a piece is off the board" + where();
        }
        const Field& field = position.board[piece.boardPosition];
        if (field.color > BLACK || !belongsTo(field.color, i) || field.pieceIndexInList != i) {
            return "the mailbox does not point back" + where();
        }
    }
    return "";
}

std::string findInDerivedValues(const Position& position) {
    for (const Color color : COLORS) {
        if (position.incremental.material[color] != materialForColor(position, color)) {
            return "material is off for colour " + std::to_string(color);
        }
    }
    for (const Color color : COLORS) {
        if (position.ofColor[color] != fieldsWhere(position, color)) {
            return "the set of fields is off for colour " + std::to_string(color);
        }
    }
    for (int type = PAWN; type <= KING; ++type) {
        const auto pieceType = static_cast<PieceType>(type);
        if (position.ofType[pieceType] != fieldsWhere(position, pieceType)) {
            return "the set of fields is off for kind " + std::to_string(type);
        }
    }
    if (position.entries != entriesWhere(position, false) ||
        position.pawnEntries != entriesWhere(position, true)) {
        return "the set of entries is off";
    }
    if (position.incremental.sum != sumOfPieces(position)) {
        return "the sum of the pieces is off";
    }
    if (position.incremental.hash != getPositionZobristHash(position)) {
        return "the key is off";
    }
    const FieldIndex king = position.pieces[KingIndex[position.colorToMove]].boardPosition;
    const bool isInCheck = isAttackedPlainly(position, king, position.oppositeColorToMove());
    if (position.check != CHECK_UNKNOWN && isInCheck != (position.check == IS_CHECK)) {
        return "the remembered check is wrong";
    }
    return "";
}

// Whether the squares strictly between `from` and `to` are empty. `step` leads from one square
// of their line to the next.
bool isEmptyBetween(const Position& position, FieldIndex from, FieldIndex to, int step) {
    for (FieldIndex field = from + step; field != to; field += step) {
        if (position.board[field].color != EMPTY) {
            return false;
        }
    }
    return true;
}

// Whether the piece on `from` attacks `to`, whatever is there.
bool attacksPlainly(const Position& position, FieldIndex from, FieldIndex to) {
    const Field& field = position.board[from];
    const int files = fileOf(to) - fileOf(from);
    const int rows = rowOf(to) - rowOf(from);
    const int longer = std::max(std::abs(files), std::abs(rows));
    const int shorter = std::min(std::abs(files), std::abs(rows));
    const bool isOnLine = longer > 0 && (shorter == 0 || shorter == longer);
    switch (field.pieceType) {
    case PAWN:
        return std::abs(files) == 1 && rows == (field.color == WHITE ? 1 : -1);
    case KNIGHT:
        return longer == 2 && shorter == 1;
    case KING:
        return longer == 1;
    case ROOK:
    case BISHOP:
    case QUEEN: {
        const bool isItsLine =
            field.pieceType == QUEEN || (field.pieceType == ROOK) == (shorter == 0);
        return isOnLine && isItsLine && isEmptyBetween(position, from, to, (to - from) / longer);
    }
    default:
        return false;
    }
}

} // namespace

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

bool isAttackedPlainly(const Position& position, FieldIndex field, Color attacker) {
    return std::any_of(BOARD_FIELDS.begin(), BOARD_FIELDS.end(), [&](FieldIndex from) {
        return position.board[from].color == attacker && attacksPlainly(position, from, field);
    });
}
