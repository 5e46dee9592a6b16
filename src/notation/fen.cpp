#include "notation/fen.h"

#include "board/positionCheck.h"
#include "board/setUp.h"
#include "notation/letters.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string_view>

namespace {

constexpr std::size_t MAX_FEN_TOKENS = 30;

// The tokens after the eight ranks.
constexpr std::size_t SIDE_TOKEN = EDGE;
constexpr std::size_t CASTLING_TOKEN = EDGE + 1;
constexpr std::size_t EN_PASSANT_TOKEN = EDGE + 2;
constexpr std::size_t CLOCK_TOKEN = EDGE + 3;
constexpr std::size_t MIN_TOKENS = EN_PASSANT_TOKEN + 1;

// The half-move clock is capped so that no game can make it overflow an int.
constexpr long MAX_FEN_CLOCK = std::numeric_limits<int>::max() / 2;

// The letter of each castling right, in the order in which FEN writes them.
struct CastlingLetter {
    char letter;
    int right;
};
constexpr std::array<CastlingLetter, CASTLES> castlingLetters = {{{'K', rightOf(WHITE, false)},
                                                                  {'Q', rightOf(WHITE, true)},
                                                                  {'k', rightOf(BLACK, false)},
                                                                  {'q', rightOf(BLACK, true)}}};

// ---- Reading without checks ----

// The token at `index`, or an empty text.
std::string tokenAt(const std::vector<std::string>& tokens, std::size_t index) {
    return index < tokens.size() ? tokens[index] : "";
}

bool isEmptyRun(char c) {
    return '1' <= c && c <= '8';
}

// Puts the pieces of one rank on the board. `rankIndex` counts from rank 8 down. Ignores pieces
// past the h-file. An unknown character counts as an empty square.
void handleRank(const std::string& rank, int rankIndex, Position& position) {
    int file = 0;
    for (const char c : rank) {
        if (isEmptyRun(c)) {
            file += c - '0';
            continue;
        }
        const int type = getIndexOfChar(c, pieceNameCharsUpper, pieceNameCharsLower);
        if (type != NOT_FOUND && type != NO_PIECE && file < EDGE) {
            markField(position, fieldOf(file, EDGE - 1 - rankIndex),
                      'A' <= c && c <= 'Z' ? WHITE : BLACK, static_cast<PieceType>(type));
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
                position.incremental.castles[right] = true;
            }
        }
    }
}

// FEN names the square that the pawn passed over; Position has the square of the pawn itself.
void readEnPassant(const std::string& token, Position& position) {
    if (token.size() < 2 || token[0] == '-') {
        return;
    }
    const FieldIndex passed = parseField(token[0], token[1]);
    if (passed != NOT_FOUND) {
        position.incremental.epField = passed + barva_OffsetPoleDozadu[position.colorToMove];
    }
}

void readClock(const std::string& token, Position& position) {
    if (!token.starts_with('-')) {
        position.incremental.halfMoveClock = static_cast<int>(
            std::clamp(std::strtol(token.c_str(), nullptr, 10), 0L, MAX_FEN_CLOCK));
    }
}

// Sets everything but the clock and the derived values.
void readTokens(const std::vector<std::string>& tokens, Position& position) {
    resetPosition(position);
    for (int i = 0; i < EDGE; ++i) {
        handleRank(tokenAt(tokens, at(i)), i, position);
    }
    position.colorToMove = tokenAt(tokens, SIDE_TOKEN).starts_with('w') ? WHITE : BLACK;
    readCastling(tokenAt(tokens, CASTLING_TOKEN), position);
    readEnPassant(tokenAt(tokens, EN_PASSANT_TOKEN), position);
}

// ---- The check ----

// `text` with single blanks between its fields, and none at either end.
std::string withSingleBlanks(const std::string& text) {
    constexpr std::string_view BLANKS(" \r\n\0", 4);
    std::string tidy;
    for (const char c : text) {
        if (BLANKS.find(c) == std::string_view::npos) {
            tidy += c;
        } else if (!tidy.empty() && tidy.back() != ' ') {
            tidy += ' ';
        }
    }
    if (tidy.ends_with(' ')) {
        tidy.pop_back();
    }
    return tidy;
}

bool isWellFormedRank(const std::string& rank) {
    int fields = 0;
    for (const char c : rank) {
        if (isEmptyRun(c)) {
            fields += c - '0';
        } else if (std::string_view("pnbrqkPNBRQK").find(c) != std::string_view::npos) {
            ++fields;
        } else {
            return false;
        }
    }
    return fields == EDGE;
}

std::string findTextFault(const std::vector<std::string>& tokens) {
    if (tokens.size() < EDGE) {
        return "it has fewer than eight ranks";
    }
    if (tokens.size() < MIN_TOKENS) {
        return "it has fewer than four fields";
    }
    for (int i = 0; i < EDGE; ++i) {
        if (!isWellFormedRank(tokens[at(i)])) {
            return "rank " + std::to_string(EDGE - i) + " does not describe eight squares";
        }
    }
    if (tokens[SIDE_TOKEN] != "w" && tokens[SIDE_TOKEN] != "b") {
        return "the side to move is neither w nor b";
    }
    return "";
}

// The reason why the position cannot be played, or an empty text. Reads only the mailbox and the
// side to move.
std::string findBoardFault(const Position& position) {
    ByColor<int> pieces = {};
    ByColor<int> kings = {};
    ByColor<FieldIndex> kingFields = {};
    for (const FieldIndex index : BOARD_FIELDS) {
        const Field& field = position.board[index];
        if (field.color > BLACK) {
            continue;
        }
        ++pieces[field.color];
        if (field.pieceType == KING) {
            ++kings[field.color];
            kingFields[field.color] = index;
        }
        if (field.pieceType == PAWN && (rowOf(index) == 0 || rowOf(index) == EDGE - 1)) {
            return "a pawn is on rank 1 or 8";
        }
    }
    if (kings[WHITE] != 1 || kings[BLACK] != 1) {
        return "a side has not exactly one king";
    }
    if (pieces[WHITE] > PIECES_PER_SIDE || pieces[BLACK] > PIECES_PER_SIDE) {
        return "a side has more than 16 pieces";
    }
    const FieldIndex king = kingFields[position.oppositeColorToMove()];
    if (isAttackedPlainly(position, king, position.colorToMove)) {
        return "the side not to move is in check";
    }
    return "";
}

bool holds(const Position& position, FieldIndex index, Color color, PieceType type) {
    const Field& field = position.board[index];
    return field.color == color && field.pieceType == type;
}

void dropUnfoundedCastles(Position& position) {
    for (const Color color : COLORS) {
        for (const bool queenSide : {true, false}) {
            const int right = rightOf(color, queenSide);
            const CastlingFields& fields = castlingFields[right];
            if (!holds(position, fields.kingFrom, color, KING) ||
                !holds(position, fields.rookFrom, color, ROOK)) {
                position.incremental.castles[right] = false;
            }
        }
    }
}

// Drops the en passant right unless the last move can have been a double step of its pawn.
void dropUnfoundedEpField(Position& position) {
    FieldIndex& epField = position.incremental.epField;
    const Color mover = position.oppositeColorToMove();
    if (epField == NO_FIELD || !holds(position, epField, mover, PAWN)) {
        epField = NO_FIELD;
        return;
    }
    const FieldIndex passed = epField + barva_OffsetPoleDozadu[mover];
    const FieldIndex origin = passed + barva_OffsetPoleDozadu[mover];
    if (!isWithin(origin, pawnStartingRowIndexMin[mover], PawnStartingRowIndexMax[mover]) ||
        position.board[passed].color != EMPTY || position.board[origin].color != EMPTY) {
        epField = NO_FIELD;
    }
}

// ---- Writing ----

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
    for (int file = 0; file < EDGE; ++file) {
        const Field& field = position.board[fieldOf(file, row)];
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
        if (position.incremental.castles[right]) {
            text += letter;
        }
    }
    return text.empty() ? "-" : text;
}

std::string enPassantToFen(const Position& position) {
    if (position.incremental.epField == NO_FIELD) {
        return "-";
    }
    return fieldToString(position.getEnPassantTarget(), true);
}

} // namespace

void setFenNotation(Position& position, const std::string& fenString) {
    const std::vector<std::string> tokens = setFenEpdCommon(position, fenString);
    readClock(tokenAt(tokens, CLOCK_TOKEN), position);
    deriveAll(position);
}

std::vector<std::string> setFenEpdCommon(Position& position, const std::string& fenString) {
    std::vector<std::string> tokens = getFenTokens(fenString);
    readTokens(tokens, position);
    return tokens;
}

std::vector<std::string> getFenTokens(const std::string& input) {
    std::vector<std::string> tokens;
    std::size_t start = 0;
    while (tokens.size() < MAX_FEN_TOKENS) {
        const bool isRank = tokens.size() < EDGE - 1;
        const std::size_t end = input.find(isRank ? '/' : ' ', start);
        tokens.push_back(input.substr(start, end - start));
        if (end == std::string::npos) {
            break;
        }
        start = end + 1;
    }
    return tokens;
}

std::string readPlayableFen(Position& position, const std::string& fen) {
    const std::vector<std::string> tokens = getFenTokens(withSingleBlanks(fen));
    std::string fault = findTextFault(tokens);
    if (!fault.empty()) {
        return fault;
    }
    Position candidate;
    readTokens(tokens, candidate);
    readClock(tokenAt(tokens, CLOCK_TOKEN), candidate);
    fault = findBoardFault(candidate);
    if (!fault.empty()) {
        return fault;
    }
    dropUnfoundedCastles(candidate);
    dropUnfoundedEpField(candidate);
    deriveAll(candidate);
    position = candidate;
    return "";
}

std::string getFen(const Position& position) {
    std::string fen;
    for (int row = EDGE - 1; row >= 0; --row) {
        fen += rankToFen(position, row) + (row > 0 ? "/" : "");
    }
    fen += position.colorToMove == WHITE ? " w " : " b ";
    fen += castlingToFen(position) + " " + enPassantToFen(position) + " ";
    return fen + std::to_string(position.incremental.halfMoveClock);
}
