#include "notation/fenCheck.h"

#include "board/hashFunctions.h"
#include "board/moveGenerator.h"
#include "notation/ioFuncs.h"

#include <string_view>
#include <vector>

namespace {

constexpr std::size_t RANKS = 8;
constexpr std::size_t SIDE_TOKEN = RANKS;
constexpr std::size_t MIN_TOKENS = RANKS + 3; // board, side, rights, en passant

bool isWellFormedRank(const std::string& rank) {
    int fields = 0;
    for (const char c : rank) {
        if ('1' <= c && c <= '8') {
            fields += c - '0';
        } else if (std::string_view("pnbrqkPNBRQK").find(c) != std::string_view::npos) {
            ++fields;
        } else {
            return false;
        }
    }
    return fields == 8;
}

std::string findTextFault(const std::string& fen) {
    const std::vector<std::string> tokens = getFenTokens(fen);
    if (tokens.size() < MIN_TOKENS) {
        return "it has fewer than eight ranks and four fields";
    }
    for (std::size_t i = 0; i < RANKS; ++i) {
        if (!isWellFormedRank(tokens[i])) {
            return "rank " + std::to_string(RANKS - i) + " does not describe eight fields";
        }
    }
    if (tokens[SIDE_TOKEN] != "w" && tokens[SIDE_TOKEN] != "b") {
        return "the side to move is neither w nor b";
    }
    return "";
}

std::string findBoardFault(const Position& position) {
    std::array<int, 2> pieces = {};
    std::array<int, 2> kings = {};
    for (int index = FIRST_FIELD; index <= LAST_FIELD; ++index) {
        const Field& field = position.board[at(index)];
        if (field.color > BLACK) {
            continue;
        }
        ++pieces[at(field.color)];
        kings[at(field.color)] += field.pieceType == KING ? 1 : 0;
        const int row = Position::get07Row(index);
        if (field.pieceType == PAWN && (row == 0 || row == 7)) {
            return "a pawn stands on rank 1 or 8";
        }
    }
    if (kings[WHITE] != 1 || kings[BLACK] != 1) {
        return "a side has not exactly one king";
    }
    if (pieces[WHITE] > PIECES_PER_SIDE || pieces[BLACK] > PIECES_PER_SIDE) {
        return "a side has more than 16 pieces";
    }
    Position otherSide = position;
    otherSide.colorToMove = position.oppositeColorToMove();
    if (isInCheck(otherSide)) {
        return "the side that is not to move stands in check";
    }
    return "";
}

bool holds(const Position& position, int index, Color color, PieceType type) {
    const Field& field = position.board[at(index)];
    return field.color == color && field.pieceType == type;
}

void dropUnfoundedCastles(Position& position) {
    for (int right = 0; right < CASTLES; ++right) {
        const CastlingFields& fields = castlingFields[at(right)];
        const Color color = right < 2 ? WHITE : BLACK;
        if (!holds(position, fields.kingFrom, color, KING) ||
            !holds(position, fields.rookFrom, color, ROOK)) {
            position.castles[at(right)] = false;
        }
    }
}

// Whether the pawn on epField can have come there by a double step just now.
bool isEpFieldFounded(const Position& position) {
    const Color mover = position.oppositeColorToMove();
    const int backward = barva_OffsetPoleDozadu[at(mover)];
    const int passed = position.epField + backward;
    const int origin = passed + backward;
    return pawnStartingRowIndexMin[at(mover)] <= origin &&
           origin <= PawnStartingRowIndexMax[at(mover)] &&
           holds(position, position.epField, mover, PAWN) &&
           position.board[at(passed)].color == EMPTY && position.board[at(origin)].color == EMPTY;
}

} // namespace

std::string readPlayableFen(Position& position, const std::string& fen) {
    std::string fault = findTextFault(fen);
    if (!fault.empty()) {
        return fault;
    }
    Position candidate;
    setFenNotation(candidate, fen);
    fault = findBoardFault(candidate);
    if (!fault.empty()) {
        return fault;
    }
    dropUnfoundedCastles(candidate);
    if (candidate.epField != 0 && !isEpFieldFounded(candidate)) {
        candidate.epField = 0;
    }
    candidate.hash = getPositionZobristHash(candidate);
    position = candidate;
    return "";
}
