#include "notation/san.h"

#include "board/attacks.h"
#include "board/makeMove.h"
#include "notation/letters.h"
#include "notation/longAlgebraicMove.h"

#include <regex>

namespace {

// The part of the start square that distinguishes a move of a piece from others to the same square,
// as `target` names it.
std::string disambiguation(const Position& position, const Move& move, const std::string& target) {
    const std::string field = fieldToString(move.from, true);
    const char piece = pieceNameCharsUpper[at(move.pieceMoved)];
    for (const std::string& part : {std::string(), field.substr(0, 1), field.substr(1)}) {
        std::string san(1, piece);
        san.append(part).append(target);
        if (findMoves(position, san).size() == 1) {
            return part;
        }
    }
    return field;
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
        return pieceNameCharsUpper[at(move.pieceMoved)] + disambiguation(position, move, text) +
               text;
    }
    if (move.pieceCaptured != NO_PIECE) {
        text = fieldToString(move.from, true).substr(0, 1) + text;
    }
    if (move.promotionPieceType != NO_PIECE) {
        text += {'=', pieceNameCharsUpper[at(move.promotionPieceType)]};
    }
    return text;
}

std::string withoutMarks(const std::string& text) {
    return text.substr(0, text.find_last_not_of("+#!?") + 1);
}

// Piece, file and row of the start, sign, target, and promotion of the text of a move.
constexpr const char* MOVE_FORM =
    "([KQRBN]?)([a-h]?)([1-8]?)([x-]?)([a-h][1-8])(?:=?([QRBNqrbn]))?";

// What a text in that form leaves open fits every move.
bool fits(const std::smatch& words, const Move& move) {
    const auto letterOf = [&](std::size_t part) {
        return words.length(part) == 0 ? ' ' : *words[part].first;
    };
    const std::string from = fieldToString(move.from, true);
    const bool isBare = letterOf(1) == ' ' && letterOf(2) != ' ' && letterOf(3) != ' ';
    const PieceType piece = letterOf(1) == ' ' ? PAWN : parsePiece(letterOf(1));
    const bool isCapture = move.pieceCaptured != NO_PIECE;
    // A pawn that captures is named by its file.
    const bool needsFile = isCapture && move.pieceMoved == PAWN;
    return !move.isCastle() && (isBare || piece == move.pieceMoved) &&
           (letterOf(2) == ' ' ? !needsFile : letterOf(2) == from[0]) &&
           (letterOf(3) == ' ' || letterOf(3) == from[1]) && (isCapture || letterOf(4) != 'x') &&
           words[5] == fieldToString(move.to, true) &&
           parsePromotionType(letterOf(6)) == move.promotionPieceType;
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
    const std::string bare = withoutMarks(text);
    const bool isShort = bare == "O-O" || bare == "0-0";
    const bool isLong = bare == "O-O-O" || bare == "0-0-0";
    const Color us = position.colorToMove;
    static const std::regex form(MOVE_FORM);
    std::smatch words;
    const bool hasForm = std::regex_match(bare, words, form);
    MoveArray legal;
    const int count = generateLegalMoves(position, legal);
    std::vector<Move> moves;
    for (const Move& move : legal.first(count)) {
        if (isShort || isLong
                ? move.castle_ep_flag == castlingFlag(us, isLong)
                : (hasForm && fits(words, move)) || LongAlgebraicMove(move).toString() == text) {
            moves.push_back(move);
        }
    }
    return moves;
}
