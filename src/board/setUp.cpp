#include "board/setUp.h"

#include "board/hashFunctions.h"

namespace {

// The order in which the piece list is filled.
constexpr std::array<PieceType, 6> piecesToLook = {KING, PAWN, ROOK, KNIGHT, BISHOP, QUEEN};

constexpr std::array<PieceType, EDGE> backRank = {ROOK, KNIGHT, BISHOP, QUEEN,
                                                  KING, BISHOP, KNIGHT, ROOK};

} // namespace

void resetPosition(Position& position) {
    for (int index = 0; index < BOARD_SIZE; ++index) {
        const auto field = static_cast<FieldIndex>(index);
        position.board[field] = {isOnBoard(field) ? EMPTY : BORDER, NO_PIECE, 0};
    }
    for (Piece& piece : position.pieces) {
        piece.pieceType = NO_PIECE;
    }
    position.colorToMove = WHITE;
    position.carried.epField = NO_FIELD;
    position.carried.castles = {};
    position.carried.halfMoveClock = 0;
    position.carried.moveEvaluation = 0;
    position.carried.material = {};
    position.check = CHECK_UNKNOWN;
}

void markField(Position& position, FieldIndex field, Color color, PieceType type) {
    position.board[field].color = color;
    position.board[field].pieceType = type;
}

void setPiecesForStartPosition(Position& position) {
    for (int file = 0; file < EDGE; ++file) {
        markField(position, fieldOf(file, 0), WHITE, backRank[at(file)]);
        markField(position, fieldOf(file, 1), WHITE, PAWN);
        markField(position, fieldOf(file, 6), BLACK, PAWN);
        markField(position, fieldOf(file, 7), BLACK, backRank[at(file)]);
    }
}

void reflectBoardToPieces(Position& position) {
    position.pieces.fill({NO_PIECE, NO_FIELD});
    ByColor<int> counters = PiecesStart;
    for (const PieceType type : piecesToLook) {
        for (const FieldIndex index : BOARD_FIELDS) {
            Field& field = position.board[index];
            if (field.pieceType != type || field.color > BLACK) {
                continue;
            }
            int& counter = counters[field.color];
            if (counter == PiecesEnd[field.color]) {
                continue;
            }
            field.pieceIndexInList = static_cast<std::int8_t>(counter);
            position.pieces[counter] = {type, index};
            ++counter;
        }
    }
}

void countMaterial(Position& position) {
    for (const Color color : COLORS) {
        position.carried.material[color] = materialForColor(position, color);
    }
}

void deriveAll(Position& position) {
    reflectBoardToPieces(position);
    countMaterial(position);
    position.carried.hash = getPositionZobristHash(position);
}

void initializeToStartPosition(Position& position) {
    resetPosition(position);
    setPiecesForStartPosition(position);
    position.carried.castles.fill(true);
    position.check = IS_NOT_CHECK;
    deriveAll(position);
}

int materialForColor(const Position& position, Color color) {
    const Color side = color == WHITE ? WHITE : BLACK;
    int sum = 0;
    for (int i = PiecesStart[side]; i < PiecesEnd[side]; ++i) {
        sum += pieceEvaluationValues[position.pieces[i].pieceType];
    }
    return sum;
}
