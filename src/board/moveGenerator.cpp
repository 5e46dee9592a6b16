#include "board/moveGenerator.h"

#include "board/attacks.h"

namespace {

constexpr std::array<PieceType, 4> pawnPromotePieceTypes = {KNIGHT, BISHOP, ROOK, QUEEN};

// Each function appends at the cursor and advances it.

void generateGenericMove(const Position& position, Move*& cursor, const Piece& piece,
                         PieceType pieceType, FieldIndex fieldToIndex) {
    const Field& target = position.board[fieldToIndex];
    const PieceType captured = target.color != EMPTY ? target.pieceType : NO_PIECE;
    initMove(*cursor, piece.boardPosition, fieldToIndex, pieceType, captured);
    ++cursor;
}

template <std::size_t N>
void generateSteps(const Position& position, Move*& cursor, const Piece& piece,
                   const std::array<int, N>& offsets) {
    for (const int offset : offsets) {
        const FieldIndex target = piece.boardPosition + offset;
        const Color color = position.board[target].color;
        if (color != BORDER && color != position.colorToMove) {
            generateGenericMove(position, cursor, piece, piece.pieceType, target);
        }
    }
}

template <std::size_t N>
void generateRays(const Position& position, Move*& cursor, const Piece& piece,
                  const std::array<int, N>& offsets) {
    for (const int offset : offsets) {
        FieldIndex target = piece.boardPosition + offset;
        while (position.board[target].color == EMPTY) {
            generateGenericMove(position, cursor, piece, piece.pieceType, target);
            target += offset;
        }
        if (position.board[target].color == position.oppositeColorToMove()) {
            generateGenericMove(position, cursor, piece, piece.pieceType, target);
        }
    }
}

// Whether the king can castle with right `right`, which it still has: the fields
// that it leaves, crosses and reaches are safe, all fields up to the rook empty.
bool canCastle(const Position& position, int right) {
    const FieldIndex kingFrom = castlingFields[right].kingFrom;
    const bool queenSide = right % 2 == 0;
    const int direction = queenSide ? -1 : 1;
    for (int j = 0; j <= 2; ++j) {
        const FieldIndex field = kingFrom + j * direction;
        const bool blocked = j > 0 && position.board[field].color != EMPTY;
        if (blocked || isFieldThreatened(position, field)) {
            return false;
        }
    }
    return !queenSide || position.board[kingFrom - 3].color == EMPTY;
}

void generateCastling(const Position& position, Move*& cursor, const Piece& king) {
    const int firstRight = 2 * position.colorToMove;
    if (king.boardPosition != castlingFields[firstRight].kingFrom) {
        return;
    }
    for (int right = firstRight; right < firstRight + 2; ++right) {
        if (position.carried.castles[right] && canCastle(position, right)) {
            cursor->init();
            cursor->castle_ep_flag = static_cast<MoveFlag>(right + 1);
            ++cursor;
        }
    }
}

// A pawn's move to `target`: one record, or one for each piece it can become.
void generatePawnMove(const Position& position, Move*& cursor, const Piece& pawn,
                      FieldIndex target) {
    const Color color = position.colorToMove;
    if (!isWithin(pawn.boardPosition, barva_pesciPremenaMin[color], barva_pesciPremenaMax[color])) {
        generateGenericMove(position, cursor, pawn, PAWN, target);
        return;
    }
    for (const PieceType promotion : pawnPromotePieceTypes) {
        generateGenericMove(position, cursor, pawn, PAWN, target);
        cursor[-1].promotionPieceType = promotion;
    }
}

void generatePawn(const Position& position, Move*& cursor, const Piece& pawn) {
    const Color color = position.colorToMove;
    const FieldIndex from = pawn.boardPosition;

    const FieldIndex ahead = from + pawnOnePieceAheadOffset[color];
    if (position.board[ahead].color == EMPTY) {
        generatePawnMove(position, cursor, pawn, ahead);
        const FieldIndex twoAhead = from + barva_OffsetDvePoleDopredu[color];
        if (isWithin(from, pawnStartingRowIndexMin[color], PawnStartingRowIndexMax[color]) &&
            position.board[twoAhead].color == EMPTY) {
            generatePawnMove(position, cursor, pawn, twoAhead);
        }
    }
    for (const FieldIndex target : {ahead - 1, ahead + 1}) {
        if (position.board[target].color == position.oppositeColorToMove()) {
            generatePawnMove(position, cursor, pawn, target);
        }
    }
    const FieldIndex epField = position.carried.epField;
    if (epField + 1 == from || epField - 1 == from) {
        initMove(*cursor, from, epField + pawnOnePieceAheadOffset[color], PAWN, PAWN);
        cursor->castle_ep_flag = EN_PASSANT;
        ++cursor;
    }
}

void generatePiece(const Position& position, Move*& cursor, const Piece& piece) {
    switch (piece.pieceType) {
    case PAWN:
        generatePawn(position, cursor, piece);
        break;
    case ROOK:
        generateRays(position, cursor, piece, vezOffset);
        break;
    case KNIGHT:
        generateSteps(position, cursor, piece, knightMovesOffsets);
        break;
    case BISHOP:
        generateRays(position, cursor, piece, bishopOffset);
        break;
    case QUEEN:
        generateRays(position, cursor, piece, kralOffset);
        break;
    case KING:
        generateSteps(position, cursor, piece, kralOffset);
        generateCastling(position, cursor, piece);
        break;
    default:
        break;
    }
}

} // namespace

int generateMoves(const Position& position, MoveArray& outputMoves) {
    Move* const first = outputMoves.elements.data();
    Move* cursor = first;
    const Color color = position.colorToMove;
    for (int i = PiecesStart[color]; i < PiecesEnd[color]; ++i) {
        generatePiece(position, cursor, position.pieces[i]);
    }
    return static_cast<int>(cursor - first);
}
