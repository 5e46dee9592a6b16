#include "support/san.h"

#include "board/attacks.h"
#include "board/makeMove.h"
#include "notation/letters.h"
#include "notation/longAlgebraicMove.h"
#include "support/textPattern.h"

#include <algorithm>
#include <optional>

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

// What the text of a move says. What it leaves open fits every move.
struct MoveWords {
    PieceType piece; // NO_PIECE for a bare start and target
    std::optional<int> file;
    std::optional<int> row; // of the start, as the file
    bool isCapture;
    FieldIndex to;
    PieceType promotion;
};

std::optional<MoveWords> readWords(const std::string& text) {
    static const TextPattern form(
        "([KQRBN]?)([a-h]?)([1-8]?)([x-]?)([a-h])([1-8])(?:=?([QRBNqrbn]))?[+#!?]*");
    const auto parts = form.match(text);
    if (!parts) {
        return std::nullopt;
    }
    const auto letter = [&](std::size_t i) { return parts->at(i).empty() ? ' ' : parts->at(i)[0]; };
    MoveWords words = {};
    if (letter(2) != ' ') {
        words.file = parse07File(letter(2));
    }
    if (letter(3) != ' ') {
        words.row = parse07Row(letter(3));
    }
    const bool isBare = words.file && words.row && letter(1) == ' ';
    const PieceType named = parsePiece(letter(1));
    words.piece = named == NO_PIECE && !isBare ? PAWN : named;
    words.isCapture = letter(4) == 'x';
    words.to = parseField(letter(5), letter(6));
    words.promotion = parsePromotionType(letter(7));
    return words;
}

bool fits(const MoveWords& words, const Move& move) {
    const bool isCapture = move.pieceCaptured != NO_PIECE;
    // A pawn that captures is told by its file.
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
    static const TextPattern castlingForm("([O0])-\\1(-\\1)?[+#!?]*");
    const auto castling = castlingForm.match(text);
    const Color us = position.colorToMove;
    const auto words = readWords(text);
    MoveArray legal;
    const int count = generateLegalMoves(position, legal);
    std::vector<Move> moves;
    for (const Move& move : legal.first(count)) {
        if (castling
                ? move.castle_ep_flag == castlingFlag(us, !castling->at(2).empty())
                : (words && fits(*words, move)) || LongAlgebraicMove(move).toString() == text) {
            moves.push_back(move);
        }
    }
    return moves;
}
