#include "board/boardRepresentation.h"

#include "board/hashFunctions.h"

namespace {

// The order in which the piece list is filled.
constexpr std::array<PieceType, 6> piecesToLook = {KING, PAWN, ROOK, KNIGHT, BISHOP, QUEEN};

constexpr std::array<PieceType, 8> backRank = {ROOK, KNIGHT, BISHOP, QUEEN,
                                               KING, BISHOP, KNIGHT, ROOK};

bool isBorder(int index) {
    const int column = index % ROW_STEP;
    return column == 0 || column == 9 || index < 20 || index > 100;
}

void setPiece(Position& position, int file07, int row07, Color color, PieceType type) {
    Field& field = position.board[at(Position::getIndexFrom07Notation(file07, row07))];
    field.color = color;
    field.pieceType = type;
}

} // namespace

void Move::init() {
    pieceCaptured = NO_PIECE;
    castle_ep_flag = ORDINARY_MOVE;
    promotionPieceType = NO_PIECE;
}

FieldIndex Move::getCapturedField() const {
    return castle_ep_flag == EN_PASSANT
               ? Position::getIndexFrom07Notation(Position::get07File(to), Position::get07Row(from))
               : to;
}

void DoMoveContext::init() {
    lostCastles = {};
    epField = 0;
    tempPieceCapturedIndex = 0;
    halfMoveClock = 0;
}

void resetPosition(Position& position) {
    position.halfMoveClock = 0;
    position.moveEvaluation = 0;
    for (int index = 0; index < BOARD_SIZE; ++index) {
        position.board[at(index)] = {isBorder(index) ? BORDER : EMPTY, NO_PIECE, 0};
    }
    for (Piece& piece : position.pieces) {
        piece.pieceType = NO_PIECE;
    }
    position.castles = {};
    position.check = CHECK_UNKNOWN;
    position.colorToMove = WHITE;
    position.epField = 0;
    position.material = {};
}

void setPiecesForStartPosition(Position& position) {
    for (int file = 0; file < 8; ++file) {
        setPiece(position, file, 0, WHITE, backRank[at(file)]);
        setPiece(position, file, 1, WHITE, PAWN);
        setPiece(position, file, 6, BLACK, PAWN);
        setPiece(position, file, 7, BLACK, backRank[at(file)]);
    }
}

void reflectBoardToPieces(Position& position) {
    position.pieces.fill({NO_PIECE, 0});
    std::array<int, 2> counters = PiecesStart;
    for (const PieceType type : piecesToLook) {
        for (int index = FIRST_FIELD; index <= LAST_FIELD; ++index) {
            Field& field = position.board[at(index)];
            if (field.pieceType != type || field.color > BLACK) {
                continue;
            }
            int& counter = counters[at(field.color)];
            if (counter == PiecesEnd[at(field.color)]) {
                continue;
            }
            field.pieceIndexInList = static_cast<std::int8_t>(counter);
            position.pieces[at(counter)] = {type, static_cast<FieldIndex>(index)};
            ++counter;
        }
    }
}

void countMaterial(Position& position) {
    for (const Color color : {WHITE, BLACK}) {
        position.material[at(color)] = materialForColor(position, color);
    }
}

void initializeToStartPosition(Position& position) {
    resetPosition(position);
    setPiecesForStartPosition(position);
    reflectBoardToPieces(position);
    countMaterial(position);
    position.castles.fill(true);
    position.check = IS_NOT_CHECK;
    position.colorToMove = WHITE;
    position.epField = 0;
    position.hash = getPositionZobristHash(position);
}

int materialForColor(const Position& position, Color color) {
    int sum = 0;
    for (int i = PiecesStart[at(color)]; i < PiecesEnd[at(color)]; ++i) {
        sum += pieceEvaluationValues[at(position.pieces[at(i)].pieceType)];
    }
    return sum;
}

int totalMaterial(const Position& position) {
    return position.material[WHITE] + position.material[BLACK];
}

void initMove(Move& move, FieldIndex from, FieldIndex to, PieceType pieceMoved,
              PieceType pieceCaptured) {
    move = {from, to, pieceMoved, pieceCaptured, ORDINARY_MOVE, NO_PIECE};
}
