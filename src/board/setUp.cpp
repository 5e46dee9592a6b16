#include "board/setUp.h"

#include "board/hashFunctions.h"

namespace {

// The order in which reflectBoardToPieces() fills the piece list.
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
    position.incremental.epField = NO_FIELD;
    position.incremental.castles = {};
    position.incremental.halfMoveClock = 0;
    position.incremental.moveEvaluation = 0;
    position.incremental.material = {};
    position.incremental.sum = {};
    position.ofColor = {};
    position.ofType = {};
    position.entries = 0;
    position.pawnEntries = 0;
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
        position.incremental.material[color] = materialForColor(position, color);
    }
}

void deriveAll(Position& position) {
    reflectBoardToPieces(position);
    countMaterial(position);
    for (const Color color : COLORS) {
        position.ofColor[color] = fieldsWhere(position, color);
    }
    for (int type = NO_PIECE; type <= KING; ++type) {
        const auto pieceType = static_cast<PieceType>(type);
        position.ofType[pieceType] = fieldsWhere(position, pieceType);
    }
    position.entries = entriesWhere(position, false);
    position.pawnEntries = entriesWhere(position, true);
    position.incremental.sum = sumOfPieces(position);
    position.incremental.hash = getPositionZobristHash(position);
}

void initializeToStartPosition(Position& position) {
    resetPosition(position);
    setPiecesForStartPosition(position);
    position.incremental.castles.fill(true);
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

FieldSet fieldsWhere(const Position& position, Color color) {
    FieldSet fields = NO_FIELDS;
    for (const FieldIndex field : BOARD_FIELDS) {
        fields |= position.board[field].color == color ? setOf(field) : NO_FIELDS;
    }
    return fields;
}

FieldSet fieldsWhere(const Position& position, PieceType type) {
    FieldSet fields = NO_FIELDS;
    for (const FieldIndex index : BOARD_FIELDS) {
        const Field& field = position.board[index];
        fields |= field.color <= BLACK && field.pieceType == type ? setOf(index) : NO_FIELDS;
    }
    return fields;
}

EntrySet entriesWhere(const Position& position, bool onlyPawns) {
    EntrySet entries = 0;
    for (int i = 0; i < LIST_ENTRIES; ++i) {
        const PieceType type = position.pieces[i].pieceType;
        entries |= type == PAWN || (type != NO_PIECE && !onlyPawns) ? entrySetOf(i) : 0;
    }
    return entries;
}

PieceSum sumOfPieces(const Position& position) {
    PieceSum sum;
    for (const Color color : COLORS) {
        for (int i = PiecesStart[color]; i < PiecesEnd[color]; ++i) {
            const auto& [type, field] = position.pieces[i];
            if (type != NO_PIECE) {
                sum += PieceSum(color, type, field);
            }
        }
    }
    return sum;
}
