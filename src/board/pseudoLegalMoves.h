// Where the pieces of the side to move may go: the pseudo-legal moves as sets of fields, and
// the order in which these are walked.
#pragma once

#include "board/attackSets.h"
#include "board/position.h"

// The fields that a piece of the side to move may go to by the rules of its kind, castling and
// en passant apart.
struct PieceTargets {
    PieceType type;
    FieldIndex from;
    FieldSet targets;
};

// Those moves of a pawn that are asked for. Any other piece has all its targets in any case.
enum class PawnMoves { ALL, CAPTURES, STEPS };

// All pseudo-legal moves of a position, piece by piece.
class PseudoLegalMoves {
public:
    // `_position` must outlive the object and stay as it is while it is asked.
    explicit PseudoLegalMoves(const Position& _position);

    // The number of moves, each promotion counted for itself, castling and en passant
    // included.
    int getCount() const { return count; }

    // Calls `visit` with each piece of some entries of the list, in their order. Stops, and
    // returns false, as soon as `visit` does. No entry may be free.
    template <PawnMoves pawnMoves = PawnMoves::ALL, class Visit>
    bool forEachPiece(EntrySet entries, Visit visit) const {
        for (; entries != 0; entries &= entries - 1) {
            const int entry = std::countr_zero(entries);
            const auto& [type, from] = position.pieces[entry];
            if (!visit(PieceTargets{
                    type, from, type == PAWN ? getPawnTargets<pawnMoves>(from) : targets[entry]})) {
                return false;
            }
        }
        return true;
    }

    // The entries of the pieces that may capture, en passant included.
    EntrySet getCapturers() const { return capturers; }

    // Whether the king may castle to the queen's or the king's side.
    bool canCastle(bool queenSide) const { return queenSide ? castlesLong : castlesShort; }
    // Whether a pawn on `from` may take en passant.
    bool canTakeEnPassant(FieldIndex from) const {
        const FieldIndex epField = position.incremental.epField;
        return epField + 1 == from || epField - 1 == from;
    }

    // The fields that all pawns together reach by one step and by two.
    FieldSet getSingleSteps() const { return singleSteps; }
    FieldSet getDoubleSteps() const { return doubleSteps; }
    // Whether the pawns stand right behind the king in the order of the list, as they do until
    // one of them has become another piece.
    bool arePawnsTogether() const {
        const EntrySet own = position.entries & ENTRIES_OF[position.colorToMove];
        const EntrySet others = own & ~position.pawnEntries & (own - 1);
        return (own & position.pawnEntries & ~((others & (~others + 1)) - 1)) == 0;
    }

private:
    template <PawnMoves pawnMoves> FieldSet getPawnTargets(FieldIndex from) const {
        const Color color = position.colorToMove;
        FieldSet reached = NO_FIELDS;
        if constexpr (pawnMoves != PawnMoves::STEPS) {
            reached |= pawnAttacks[color][from] & position.ofColor[opposite(color)];
        }
        if constexpr (pawnMoves != PawnMoves::CAPTURES) {
            const FieldSet step = aheadOf(setOf(from), color) & singleSteps;
            reached |= step | (aheadOf(step, color) & doubleSteps);
        }
        return reached;
    }
    void addPawns();

    const Position& position;
    ByEntry<FieldSet> targets; // unset for pawns, the other side and free entries
    EntrySet capturers = 0;    // en passant included
    FieldSet singleSteps = NO_FIELDS;
    FieldSet doubleSteps = NO_FIELDS;
    int count = 0;
    bool castlesLong;
    bool castlesShort;
};

// Whether a pawn of a colour promotes with its next step from a field.
constexpr bool isBeforePromotion(FieldIndex field, Color color) {
    return isWithin(field, barva_pesciPremenaMin[color], barva_pesciPremenaMax[color]);
}

namespace targetWalk {

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
bool forEachOnRays(const PieceTargets& piece, FieldSet fields, const std::array<int, N>& offsets,
                   Visit& visit) {
    for (const int offset : offsets) {
        for (FieldIndex to = piece.from + offset; contains(piece.targets, to); to += offset) {
            if (contains(fields, to) && !visit(to)) {
                return false;
            }
        }
    }
    return true;
}

} // namespace targetWalk

// Calls `visit` for each field of `fields`, a part of the piece's targets, in the order of
// moves: by direction, then by distance. Stops, and returns false, as soon as `visit` does.
template <class Visit>
bool forEachTarget(const PieceTargets& piece, FieldSet fields, Color color, Visit visit) {
    if ((fields & (fields - 1)) == NO_FIELDS) {
        return fields == NO_FIELDS || visit(firstOf(fields));
    }
    switch (piece.type) {
    case PAWN:
        return targetWalk::forEachStep(piece.from, fields, targetWalk::pawnSteps[color], visit);
    case ROOK:
        return targetWalk::forEachOnRays(piece, fields, vezOffset, visit);
    case KNIGHT:
        return targetWalk::forEachStep(piece.from, fields, knightMovesOffsets, visit);
    case BISHOP:
        return targetWalk::forEachOnRays(piece, fields, bishopOffset, visit);
    case QUEEN:
        return targetWalk::forEachOnRays(piece, fields, kralOffset, visit);
    case KING:
        return targetWalk::forEachStep(piece.from, fields, kralOffset, visit);
    default:
        return true;
    }
}

inline constexpr std::array<PieceType, 4> pawnPromotePieceTypes = {KNIGHT, BISHOP, ROOK, QUEEN};

// Calls `visit` with each move of a piece to a field that it may go to, where it takes
// `captured`: one, or one for each piece that a pawn can become. Stops, and returns false, as
// soon as `visit` does.
template <class Visit>
bool forEachMoveTo(const PieceTargets& piece, FieldIndex to, PieceType captured, Color color,
                   Visit visit) {
    Move move = {piece.from, to, piece.type, captured, ORDINARY_MOVE, NO_PIECE};
    if (piece.type != PAWN || !isBeforePromotion(piece.from, color)) [[likely]] {
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
