#include "support/san.h"

#include "board/attacks.h"
#include "board/makeMove.h"
#include "notation/letters.h"
#include "notation/longAlgebraicMove.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace {

// The part of the start square that distinguishes a move from others of its kind to the same
// square.
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

// What the text of a move says. What it leaves open fits every move.
struct MoveWords {
    PieceType piece; // NO_PIECE for a bare start and target
    std::optional<int> file;
    std::optional<int> row; // of the start, as the file
    bool isCapture;
    FieldIndex to;
    PieceType promotion;
};

std::string withoutMarks(const std::string& text) {
    return text.substr(0, text.find_last_not_of("+#!?") + 1);
}

// Removes the last letter of `text` and returns it if it is one of `letters`; a blank otherwise.
char takeLast(std::string& text, std::string_view letters) {
    if (text.empty() || letters.find(text.back()) == std::string_view::npos) {
        return ' ';
    }
    const char last = text.back();
    text.pop_back();
    return last;
}

// Reads the text from its end, where what has to be there is.
std::optional<MoveWords> readWords(const std::string& text) {
    std::string rest = withoutMarks(text);
    const char promotion = takeLast(rest, "QRBNqrbn");
    if (promotion != ' ') {
        takeLast(rest, "=");
    }
    const char toRow = takeLast(rest, "12345678");
    const char toFile = takeLast(rest, "abcdefgh");
    const char sign = takeLast(rest, "x-");
    const char row = takeLast(rest, "12345678");
    const char file = takeLast(rest, "abcdefgh");
    const char piece = takeLast(rest, "KQRBN");
    if (toRow == ' ' || toFile == ' ' || !rest.empty()) {
        return std::nullopt;
    }
    MoveWords words = {};
    if (file != ' ') {
        words.file = parse07File(file);
    }
    if (row != ' ') {
        words.row = parse07Row(row);
    }
    const bool isBare = words.file && words.row && piece == ' ';
    const PieceType named = parsePiece(piece);
    words.piece = named == NO_PIECE && !isBare ? PAWN : named;
    words.isCapture = sign == 'x';
    words.to = parseField(toFile, toRow);
    words.promotion = parsePromotionType(promotion);
    return words;
}

bool fits(const MoveWords& words, const Move& move) {
    const bool isCapture = move.pieceCaptured != NO_PIECE;
    // A pawn that captures is named by its file.
    const bool needsFile = isCapture && move.pieceMoved == PAWN;
    return !move.isCastle() && (words.piece == NO_PIECE || words.piece == move.pieceMoved) &&
           words.to == move.to && words.promotion == move.promotionPieceType &&
           words.file.value_or(fileOf(move.from)) == fileOf(move.from) &&
           words.row.value_or(rowOf(move.from)) == rowOf(move.from) &&
           (isCapture || !words.isCapture) && (words.file || !needsFile);
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

std::vector<Move> findMoves(const Position& position, const std::string& text) {
    const std::string castling = withoutMarks(text);
    const bool isShort = castling == "O-O" || castling == "0-0";
    const bool isLong = castling == "O-O-O" || castling == "0-0-0";
    const Color us = position.colorToMove;
    const auto words = readWords(text);
    MoveArray legal;
    const int count = generateLegalMoves(position, legal);
    std::vector<Move> moves;
    for (const Move& move : legal.first(count)) {
        if (isShort || isLong
                ? move.castle_ep_flag == castlingFlag(us, isLong)
                : (words && fits(*words, move)) || LongAlgebraicMove(move).toString() == text) {
            moves.push_back(move);
        }
    }
    return moves;
}
