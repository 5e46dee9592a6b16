// Where the pieces of the side to move may go: the pseudo-legal moves as sets of fields, and
// the order in which these are walked.
#pragma once

#include "board/attackSets.h"
#include "board/position.h"

// The pieces of the side to move in the order of the list, each with the fields that it may go
// to by the rules of its kind. Castling and en passant stand apart.
class MoveTargets {
public:
    struct Piece {
        PieceType type;
        FieldIndex from;
        FieldSet targets;
    };

    explicit MoveTargets(const Position& position);

    const Piece* begin() const { return pieces.data(); }
    const Piece* end() const { return pieces.data() + size; }

    // Whether the king may castle to the queen's or the king's side.
    bool canCastle(bool queenSide) const { return queenSide ? castlesLong : castlesShort; }
    // Whether a pawn on `from` may take en passant.
    bool canTakeEnPassant(FieldIndex from) const {
        return epField + 1 == from || epField - 1 == from;
    }

    // The number of moves, each promotion counted for itself, castling and en passant
    // included.
    int getCount() const { return count; }

private:
    std::array<Piece, PIECES_PER_SIDE> pieces;
    std::size_t size = 0;
    int count = 0;
    FieldIndex epField;
    bool castlesLong = false;
    bool castlesShort = false;
};

// Whether a pawn of a colour promotes with its next step from a field.
constexpr bool isBeforePromotion(FieldIndex field, Color color) {
    return isWithin(field, barva_pesciPremenaMin[color], barva_pesciPremenaMax[color]);
}

namespace moveTargets {

// The steps of a pawn in the order of its moves: ahead, two ahead, the captures.
inline constexpr ByColor<std::array<int, 4>> pawnSteps = {std::array<int, 4>{10, 20, 9, 11},
                                                          std::array<int, 4>{-10, -20, -11, -9}};

template <std::size_t N, class Visit>
bool forEachStep(FieldIndex from, FieldSet fields, const std::array<int, N>& offsets,
                 Visit& visit) {
    for (const int offset : offsets) {
        if (contains(fields, from + offset) && !visit(from + offset)) {
            return false;
        }
    }
    return true;
}

template <std::size_t N, class Visit>
bool forEachOnRays(const MoveTargets::Piece& piece, FieldSet fields,
                   const std::array<int, N>& offsets, Visit& visit) {
    for (const int offset : offsets) {
        for (FieldIndex to = piece.from + offset; contains(piece.targets, to); to += offset) {
            if (contains(fields, to) && !visit(to)) {
                return false;
            }
        }
    }
    return true;
}

} // namespace moveTargets

// Calls `visit` for each field of `fields`, a part of the piece's targets, in the order of
// moves: by direction, then by distance. Stops, and returns false, as soon as `visit` does.
template <class Visit>
bool forEachTarget(const MoveTargets::Piece& piece, FieldSet fields, Color color, Visit visit) {
    if (fields == NO_FIELDS) {
        return true;
    }
    switch (piece.type) {
    case PAWN:
        return moveTargets::forEachStep(piece.from, fields, moveTargets::pawnSteps[color], visit);
    case ROOK:
        return moveTargets::forEachOnRays(piece, fields, vezOffset, visit);
    case KNIGHT:
        return moveTargets::forEachStep(piece.from, fields, knightMovesOffsets, visit);
    case BISHOP:
        return moveTargets::forEachOnRays(piece, fields, bishopOffset, visit);
    case QUEEN:
        return moveTargets::forEachOnRays(piece, fields, kralOffset, visit);
    case KING:
        return moveTargets::forEachStep(piece.from, fields, kralOffset, visit);
    default:
        return true;
    }
}

inline constexpr std::array<PieceType, 4> pawnPromotePieceTypes = {KNIGHT, BISHOP, ROOK, QUEEN};

// Calls `visit` with each move of a piece to a field that it may go to: one, or one for each
// piece that a pawn can become. Stops, and returns false, as soon as `visit` does.
template <class Visit>
bool forEachMoveTo(const Position& position, const MoveTargets::Piece& piece, FieldIndex to,
                   Visit visit) {
    const Field& target = position.board[to];
    const PieceType captured = target.color != EMPTY ? target.pieceType : NO_PIECE;
    Move move = {piece.from, to, piece.type, captured, ORDINARY_MOVE, NO_PIECE};
    if (piece.type != PAWN || !isBeforePromotion(piece.from, position.colorToMove)) {
        return visit(move);
    }
    for (const PieceType promotion : pawnPromotePieceTypes) {
        move.promotionPieceType = promotion;
        if (!visit(move)) {
            return false;
        }
    }
    return true;
}

// The record of a castling, or of an en passant capture, of the side to move.
Move makeCastling(const Position& position, bool queenSide);
Move makeEnPassant(const Position& position, FieldIndex from);
