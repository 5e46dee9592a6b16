#include "notation/san.h"

#include "board/attacks.h"
#include "board/makeMove.h"
#include "notation/letters.h"
#include "notation/longAlgebraicMove.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

constexpr std::string_view FILES = "abcdefgh";
constexpr std::string_view ROWS = "12345678";
constexpr std::string_view MOVE_MARKS = "+#!?*";
constexpr std::array<std::string_view, 2> EN_PASSANT_MARKS = {"e.p.", "ep"};

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

std::string withoutMarks(std::string_view text) {
    const auto strip = [&] { text = text.substr(0, text.find_last_not_of(MOVE_MARKS) + 1); };
    strip();
    for (const std::string_view suffix : EN_PASSANT_MARKS) {
        if (text.ends_with(suffix)) {
            text.remove_suffix(suffix.size());
            strip();
            break;
        }
    }
    return std::string(text);
}

// Removes the first, or the last, character if it is one of `letters`, and returns it; a blank if
// it is not.
char takeFirst(std::string_view& text, std::string_view letters) {
    if (text.empty() || letters.find(text.front()) == std::string_view::npos) {
        return ' ';
    }
    const char letter = text.front();
    text.remove_prefix(1);
    return letter;
}

char takeLast(std::string_view& text, std::string_view letters) {
    if (text.empty() || letters.find(text.back()) == std::string_view::npos) {
        return ' ';
    }
    const char letter = text.back();
    text.remove_suffix(1);
    return letter;
}

// The text of a move in parts, a blank for each that is left out.
struct MoveParts {
    char piece;
    char file; // of the start
    char row;
    char sign; // of a capture, or a hyphen
    FieldIndex to;
    char promotion;
};

std::optional<MoveParts> splitMove(std::string_view text) {
    MoveParts parts = {};
    parts.piece = takeFirst(text, "KQRBN");
    parts.promotion = takeLast(text, "QRBNqrbn");
    if (parts.promotion != ' ') {
        takeLast(text, "=");
    }
    const char row = takeLast(text, ROWS);
    const char file = takeLast(text, FILES);
    parts.to = parseField(file, row);
    parts.sign = takeLast(text, "x-");
    parts.row = takeLast(text, ROWS);
    parts.file = takeLast(text, FILES);
    return text.empty() && parts.to != NOT_FOUND ? std::optional(parts) : std::nullopt;
}

// What a text leaves open fits every move.
bool fits(const MoveParts& parts, const Move& move) {
    const LongAlgebraicMove squares(move);
    const std::string from = fieldToString(squares.getFrom(), true);
    // Both squares alone name the move of any piece.
    const bool isBare = parts.piece == ' ' && parts.file != ' ' && parts.row != ' ';
    const PieceType piece = parts.piece == ' ' ? PAWN : parsePiece(parts.piece);
    const bool isCapture = !move.isCastle() && move.pieceCaptured != NO_PIECE;
    // A pawn that captures is named by its file.
    const bool needsFile = isCapture && move.pieceMoved == PAWN;
    return parts.to == squares.getTo() &&
           (isBare || (!move.isCastle() && piece == move.pieceMoved)) &&
           (parts.file == ' ' ? !needsFile : parts.file == from[0]) &&
           (parts.row == ' ' || parts.row == from[1]) && (isCapture || parts.sign != 'x') &&
           parsePromotionType(parts.promotion) == squares.getPromotionType();
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

std::string withoutMoveNumber(const std::string& word) {
    const std::size_t digits = std::min(word.find_first_not_of("0123456789"), word.size());
    if (digits < word.size() && word[digits] != '.') {
        return word;
    }
    return word.substr(std::min(word.find_first_not_of('.', digits), word.size()));
}

bool isMoveMark(const std::string& word) {
    return withoutMarks(word).empty();
}

std::vector<Move> findMoves(const Position& position, const std::string& text) {
    const std::string bare = withoutMarks(text);
    const bool isShort = bare == "O-O" || bare == "0-0";
    const bool isLong = bare == "O-O-O" || bare == "0-0-0";
    const std::optional<MoveParts> parts = splitMove(bare);
    std::vector<Move> moves;
    if (!isShort && !isLong && !parts) {
        return moves;
    }
    MoveArray legal;
    const int count = generateLegalMoves(position, legal);
    for (const Move& move : legal.first(count)) {
        if (isShort || isLong ? move.castle_ep_flag == castlingFlag(position.colorToMove, isLong)
                              : fits(*parts, move)) {
            moves.push_back(move);
        }
    }
    return moves;
}

std::optional<Move> findMove(const Position& position, const std::string& text,
                             std::string& fault) {
    const std::vector<Move> moves = findMoves(position, text);
    if (moves.size() == 1) {
        return moves.front();
    }
    fault = "is not legal in its position";
    if (!moves.empty()) {
        fault = "can mean more than one move:";
        for (const Move& move : moves) {
            fault.append(1, ' ').append(toSan(position, move));
        }
    }
    return std::nullopt;
}
