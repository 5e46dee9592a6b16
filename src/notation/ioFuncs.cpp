#include "notation/ioFuncs.h"

#include "board/hashFunctions.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <limits>
#include <sstream>
#include <string_view>

namespace {

constexpr std::size_t MAX_FEN_TOKENS = 30;
constexpr std::size_t BOARD_CUTS = 7; // cuts at "/" that separate the eight ranks

// The tokens of FEN text behind the eight ranks.
constexpr std::size_t SIDE_TOKEN = 8;
constexpr std::size_t CASTLING_TOKEN = 9;
constexpr std::size_t EN_PASSANT_TOKEN = 10;
constexpr std::size_t CLOCK_TOKEN = 11;

// A clock that text claims is kept so far from the end of the range that no game
// counts past it.
constexpr long MAX_FEN_CLOCK = std::numeric_limits<int>::max() / 2;

// A right as FEN writes it, in the order of writing.
struct CastlingLetter {
    char letter;
    std::size_t right;
};
constexpr std::array<CastlingLetter, CASTLES> castlingLetters = {
    {{'K', 1}, {'Q', 0}, {'k', 3}, {'q', 2}}};

constexpr std::string_view EN_PASSANT_MARK = "(e.p)";
constexpr PieceType SOMETHING_CAPTURED = 7;

// The token at `index`, or an empty text.
std::string tokenAt(const std::vector<std::string>& tokens, std::size_t index) {
    return index < tokens.size() ? tokens[index] : "";
}

// Puts the pieces of one rank on the board; `rankIndex` counts from rank 8 down.
// What does not fit the rank is passed over.
void handleRank(const std::string& rank, int rankIndex, Position& position) {
    int file = 0;
    for (const char c : rank) {
        if ('1' <= c && c <= '8') {
            file += c - '0';
            continue;
        }
        const FieldIndex type = getIndexOfChar(c, pieceNameCharsUpper, pieceNameCharsLower);
        if (type != NOT_FOUND && type != NO_PIECE && file < 8) {
            Field& field =
                position.board[at(Position::getIndexFrom07Notation(file, 7 - rankIndex))];
            field.pieceType = type;
            field.color = 'A' <= c && c <= 'Z' ? WHITE : BLACK;
        }
        ++file;
    }
}

void readCastling(const std::string& token, Position& position) {
    for (const char c : token) {
        if (c == '-') {
            return;
        }
        for (const auto& [letter, right] : castlingLetters) {
            if (c == letter) {
                position.castles[right] = true;
            }
        }
    }
}

// FEN names the field behind the pawn, a position the pawn's own.
void readEnPassant(const std::string& token, Position& position) {
    if (token.size() < 2 || token[0] == '-') {
        return;
    }
    const FieldIndex behind = parseField(token[0], token[1]);
    if (behind != NOT_FOUND) {
        position.epField =
            static_cast<FieldIndex>(behind + barva_OffsetPoleDozadu[at(position.colorToMove)]);
    }
}

// The name of a kind of piece; '?' for a type that text has claimed and that is none.
char pieceNameOf(PieceType type) {
    return NO_PIECE <= type && type <= KING ? pieceNameChars[at(type)] : '?';
}

char pieceLetter(const Field& field) {
    return field.color == WHITE ? pieceNameCharsUpper[at(field.pieceType)]
                                : pieceNameCharsLower[at(field.pieceType)];
}

std::string rankToFen(const Position& position, int row) {
    std::string text;
    int empty = 0;
    const auto flushEmpty = [&] {
        if (empty > 0) {
            text += std::to_string(empty);
            empty = 0;
        }
    };
    for (int file = 0; file < 8; ++file) {
        const Field& field = position.board[at(Position::getIndexFrom07Notation(file, row))];
        if (field.color == EMPTY) {
            ++empty;
        } else {
            flushEmpty();
            text += pieceLetter(field);
        }
    }
    flushEmpty();
    return text;
}

std::string castlingToFen(const Position& position) {
    std::string text;
    for (const auto& [letter, right] : castlingLetters) {
        if (position.castles[right]) {
            text += letter;
        }
    }
    return text.empty() ? "-" : text;
}

std::string enPassantToFen(const Position& position) {
    if (position.epField == 0) {
        return "-";
    }
    const int behind = position.epField + pawnOnePieceAheadOffset[at(position.colorToMove)];
    return fieldToString(static_cast<FieldIndex>(behind), true);
}

// Whether the characters of `str` from `start` up to `end` equal `cstr`.
bool compare(const std::string& str, std::size_t start, std::size_t end, std::string_view cstr) {
    return start <= str.size() && str.compare(start, end - start, cstr) == 0;
}

// Text line 0 to 3 of one field of the board diagram, six characters wide.
std::string diagramField(const Position& position, int file, int row, int line) {
    constexpr char SOLID_BLOCK = '\xDB'; // in the console's code page
    const char fill = (row + file) % 2 != 0 ? ' ' : SOLID_BLOCK;
    const Field& field = position.board[at(Position::getIndexFrom07Notation(file, row))];
    if (field.color == EMPTY || line == 0 || line == 3) {
        return std::string(6, fill);
    }
    std::string name = "  ";
    if (line == 1) {
        name = {field.color == WHITE ? 'B' : 'C', "xPRNBQK"[at(field.pieceType)]};
    }
    return fill + (' ' + name + ' ') + fill;
}

std::string diagram(const Position& position) {
    std::string text;
    for (int row = 7; row >= 0; --row) {
        for (int line = 0; line < 4; ++line) {
            for (int file = 0; file < 8; ++file) {
                text += diagramField(position, file, row, line);
            }
            text += '\n';
        }
    }
    return text;
}

// One step beyond a mate on the board, so that halving gives moves from plies.
constexpr std::int64_t MATE_BASE = 2147483449;
constexpr int MATE_TEXT_LIMIT = 2147483398; // scores beyond it are told as mates
constexpr int MATE_IN_BASE = 1073741724;

} // namespace

void setFenNotation(Position& position, const std::string& fenString) {
    const std::vector<std::string> tokens = setFenEpdCommon(position, fenString);
    const std::string clock = tokenAt(tokens, CLOCK_TOKEN);
    if (!clock.starts_with('-')) {
        position.halfMoveClock = static_cast<int>(
            std::clamp(std::strtol(clock.c_str(), nullptr, 10), 0L, MAX_FEN_CLOCK));
    }
    reflectBoardToPieces(position);
    countMaterial(position);
    position.hash = getPositionZobristHash(position);
}

std::vector<std::string> setFenEpdCommon(Position& position, const std::string& fenString) {
    resetPosition(position);
    std::vector<std::string> tokens = getFenTokens(fenString);
    for (int i = 0; i < 8; ++i) {
        handleRank(tokenAt(tokens, at(i)), i, position);
    }
    position.colorToMove = tokenAt(tokens, SIDE_TOKEN).starts_with('w') ? WHITE : BLACK;
    readCastling(tokenAt(tokens, CASTLING_TOKEN), position);
    readEnPassant(tokenAt(tokens, EN_PASSANT_TOKEN), position);
    return tokens;
}

std::vector<std::string> getFenTokens(const std::string& input) {
    std::vector<std::string> tokens;
    std::size_t start = 0;
    while (tokens.size() < MAX_FEN_TOKENS) {
        const std::size_t end = input.find(tokens.size() < BOARD_CUTS ? '/' : ' ', start);
        tokens.push_back(input.substr(start, end - start));
        if (end == std::string::npos) {
            break;
        }
        start = end + 1;
    }
    return tokens;
}

std::string getFen(const Position& position) {
    std::string fen;
    for (int row = 7; row >= 0; --row) {
        fen += rankToFen(position, row) + (row > 0 ? "/" : "");
    }
    fen += position.colorToMove == WHITE ? " w " : " b ";
    fen += castlingToFen(position) + " " + enPassantToFen(position) + " ";
    return fen + std::to_string(position.halfMoveClock);
}

FieldIndex getIndexOfChar(char ch, std::span<const char> array, int start, int end) {
    for (int i = start; i < end; ++i) {
        if (array[at(i)] == ch) {
            return static_cast<FieldIndex>(i);
        }
    }
    return NOT_FOUND;
}

FieldIndex getIndexOfChar(char ch, std::span<const char> array) {
    return getIndexOfChar(ch, array, 0, static_cast<int>(array.size()));
}

FieldIndex getIndexOfChar(char ch, std::span<const char> arrayUpper,
                          std::span<const char> arrayLower) {
    const FieldIndex index = getIndexOfChar(ch, arrayUpper);
    return index != NOT_FOUND ? index : getIndexOfChar(ch, arrayLower);
}

FieldIndex parseField(char c1, char c2) {
    const int file = parse07File(c1);
    const int row = parse07Row(c2);
    if (file == NOT_FOUND || row == NOT_FOUND) {
        return NOT_FOUND;
    }
    return Position::getIndexFrom07Notation(file, row);
}

int parse07File(char f) {
    return getIndexOfChar(f, fileNames, fileNamesLower);
}

int parse07Row(char row) {
    return getIndexOfChar(row, rowNames);
}

bool isFile(char c1) {
    return parse07File(c1) != NOT_FOUND;
}

bool isRow(char c1) {
    return parse07Row(c1) != NOT_FOUND;
}

PieceType parsePiece(char c) {
    const FieldIndex index = getIndexOfChar(c, pieceNameChars, pieceNameCharsLower);
    return index != NOT_FOUND ? index : NO_PIECE;
}

PieceType parseUpperPiece(char c) {
    const FieldIndex index = getIndexOfChar(c, pieceNameChars);
    return index != NOT_FOUND ? index : NO_PIECE;
}

PieceType parsePromotionType(char c) {
    const PieceType type = parsePiece(c);
    return ROOK <= type && type <= QUEEN ? type : NO_PIECE;
}

std::string promotionTypeToString(PieceType type) {
    return type == NO_PIECE ? "" : std::string(1, pieceNameCharsLower[at(type)]);
}

std::string fieldToString(FieldIndex fieldIndex, bool lowerCase) {
    const char file = static_cast<char>((lowerCase ? 'a' : 'A') + fieldIndex % ROW_STEP - 1);
    const char row = static_cast<char>('/' + fieldIndex / ROW_STEP);
    return {file, row};
}

void printField(std::ostream& stream, FieldIndex fieldIndex, bool lowerCase) {
    stream << fieldToString(fieldIndex, lowerCase);
}

void printField(FieldIndex fieldIndex, bool lowerCase) {
    printField(std::cout, fieldIndex, lowerCase);
}

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

void printMove(const Move& move) {
    printMove(std::cout, move);
}

void printVariantMove(std::ostream& stream, const VariantMove& move) {
    stream << (move.isQuiscence ? "(" : "");
    printMove(stream, move.move);
    stream << (move.isHash ? "(h)" : "") << (move.isOpening ? "(o)" : "")
           << (move.isQuiscence ? ")" : "");
}

void printVariantMove(const VariantMove& move) {
    printVariantMove(std::cout, move);
}

void printVariant(std::ostream& stream, const VariantMove* moves, int varLength) {
    for (int i = varLength - 1; i >= 0; --i) {
        printVariantMove(stream, moves[i]);
        stream << ' ';
    }
}

void printVariant(const VariantMove* moves, int varLength) {
    printVariant(std::cout, moves, varLength);
}

void printVariant(std::ostream& stream, const Variant& variant) {
    printVariant(stream, variant.variantMoves.data(), variant.varLength);
    stream << "Evaluation : " << variant.evaluation << '\n';
}

void printVariant(const Variant& variant) {
    printVariant(std::cout, variant);
}

std::string variantToString(const Variant& variant) {
    std::ostringstream stream;
    printVariant(stream, variant);
    return stream.str();
}

Move parseMove(const std::string& str, Color color) {
    Move move = {NOT_FOUND, NOT_FOUND, NO_PIECE, NO_PIECE, ORDINARY_MOVE, NO_PIECE};
    if (str == "0-0-0" || str == "0-0") {
        const bool queenSide = str.size() == 5;
        move.castle_ep_flag = static_cast<std::int8_t>(2 * color + (queenSide ? 1 : 2));
        return move;
    }
    if (str.size() < 4) {
        return move;
    }
    move.pieceMoved = getIndexOfChar(str[0], pieceNameChars, PAWN, KING + 1);
    move.from = parseField(str[1], str[2]);
    if (str[3] == 'x') {
        move.pieceCaptured = SOMETHING_CAPTURED;
    } else if (str[3] != '-') {
        std::cout << "parsing error, '-' expected" << std::endl;
        return move;
    }
    if (str.size() < 6) {
        return move;
    }
    move.to = parseField(str[4], str[5]);
    if (str.size() > 6) {
        const FieldIndex promotion = getIndexOfChar(str[6], pieceNameChars);
        if (promotion != NOT_FOUND) {
            move.promotionPieceType = promotion;
        } else if (compare(str, 6, 12, "(e.p.)")) {
            move.castle_ep_flag = EN_PASSANT;
        }
    }
    return move;
}

void printEval(int eval) {
    if (eval > MATE_TEXT_LIMIT) {
        std::cout << "Will mate in " << mateInFromEval(eval) << " (" << eval << ")\n";
    } else if (eval < -MATE_TEXT_LIMIT) {
        std::cout << "Will be in mate in " << mateInFromEval(eval) << " (" << eval << ")\n";
    } else {
        std::cout << eval << '\n';
    }
}

int mateInEval(int mateIn) {
    if (mateIn == 0) {
        return 0;
    }
    return mateIn > 0 ? (MATE_IN_BASE - mateIn) * 2 + 1 : (mateIn - MATE_IN_BASE) * 2 + 1;
}

int mateInFromEval(int eval) {
    if (eval > MATE_TEXT_LIMIT) {
        return static_cast<int>((MATE_BASE - eval) / 2);
    }
    if (eval < -MATE_TEXT_LIMIT) {
        return static_cast<int>((eval + MATE_BASE) / 2);
    }
    return 0;
}

void printPieces(const Position& position) {
    for (std::size_t i = 0; i < position.pieces.size(); ++i) {
        const Piece& piece = position.pieces[i];
        std::cout << i << pieceNameChars[at(piece.pieceType)] << '-'
                  << static_cast<int>(piece.boardPosition) << "  " << (i % 4 == 3 ? "\n" : "");
    }
}

void printPosition(const Position& position) {
    std::printf("%s", diagram(position).c_str());
}

std::ostream& operator<<(std::ostream& stream, const Position& position) {
    return stream << diagram(position);
}
