// The pseudo-legal moves of the side to move as sets of target squares, and the order in which
// the targets are visited.
//
// Visitors return false to stop, true to go on. A visitor that returns void never stops.
#pragma once

#include "board/attackSets.h"
#include "board/position.h"

#include <type_traits>

// The pseudo-legal targets of one piece, without castling and en passant.
struct PieceTargets {
    PieceType type;
    FieldIndex from;
    FieldSet targets;
};

// The pawn moves that forEachPiece() includes. Other pieces always have all their targets.
enum class PawnMoves { ALL, CAPTURES, STEPS };

namespace targetWalk {

// Calls `visit`. Returns false if it asks to stop.
template <class Visit, class Argument> bool goesOn(Visit& visit, const Argument& argument) {
    if constexpr (std::is_void_v<std::invoke_result_t<Visit&, const Argument&>>) {
        visit(argument);
        return true;
    } else {
        return visit(argument);
    }
}

} // namespace targetWalk

// All pseudo-legal moves of a position, piece by piece.
class PseudoLegalMoves {
public:
    // Keeps a reference to the position, which must not change while this object is in use.
    explicit PseudoLegalMoves(const Position& _position);

    // The number of moves, with castlings, en passant captures and each promotion.
    int getCount() const;

    // Calls `visit(PieceTargets)` for each piece in `entries`, in list order. Returns false if the
    // visitor stopped. Requires entries of the side to move that are not free.
    template <PawnMoves pawnMoves = PawnMoves::ALL, class Visit>
    bool forEachPiece(EntrySet entries, Visit visit) const {
        for (; entries != 0; entries &= entries - 1) {
            const int entry = std::countr_zero(entries);
            const auto& [type, from] = position.pieces[entry];
            const PieceTargets piece = {
                type, from, type == PAWN ? getPawnTargets<pawnMoves>(from) : targets[entry]};
            if (!targetWalk::goesOn(visit, piece)) {
                return false;
            }
        }
        return true;
    }

    // The list entries of the pieces that can capture, en passant included.
    EntrySet getCapturers() const { return capturers; }

    // Whether castling to the queen side or the king side is legal.
    bool canCastle(bool queenSide) const {
        const int right = rightOf(position.colorToMove, queenSide);
        return position.incremental.castles[right] && canCastleBy(right);
    }
    // Whether a pawn on `from` can capture en passant.
    bool canTakeEnPassant(FieldIndex from) const {
        const FieldIndex epField = position.incremental.epField;
        return epField + 1 == from || epField - 1 == from;
    }

    // The squares that the pawns reach by single steps and by double steps. The two are disjoint:
    // the square that a double step passes over is empty, so no pawn there has the same target.
    FieldSet getSingleSteps() const { return singleSteps; }
    FieldSet getDoubleSteps() const { return doubleSteps; }
    // Whether the pawns precede the other pieces in list order, which holds until a promotion.
    // The king, always first, does not count.
    bool pawnsLeadTheList() const {
        const Color color = position.colorToMove;
        const EntrySet pawns = position.pawnEntries & ENTRIES_OF[color];
        const EntrySet pieces =
            position.entries & ENTRIES_OF[color] & ~pawns & ~entrySetOf(KingIndex[color]);
        const EntrySet firstPiece = pieces & (~pieces + 1); // 0 if there is none
        const EntrySet beforeIt = firstPiece - 1;           // then all entries
        return (pawns & ~beforeIt) == 0;
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
    bool canCastleBy(int right) const;

    const Position& position;
    ByEntry<FieldSet> targets; // unset for pawns, the other side and free entries
    EntrySet capturers = 0;    // en passant included
    FieldSet singleSteps = NO_FIELDS;
    FieldSet doubleSteps = NO_FIELDS;
};

// Whether a pawn of a colour on `field` promotes with its next step.
constexpr bool isBeforePromotion(FieldIndex field, Color color) {
    return isWithin(field, barva_pesciPremenaMin[color], barva_pesciPremenaMax[color]);
}

namespace targetWalk {

// The steps of a pawn in move order.
constexpr std::array<int, 4> pawnStepsOf(Color color) {
    const auto& captures = pawnCaptureOffsets[color];
    return {pawnOnePieceAheadOffset[color], barva_OffsetDvePoleDopredu[color], captures[0],
            captures[1]};
}
inline constexpr ByColor<std::array<int, 4>> pawnSteps = {pawnStepsOf(WHITE), pawnStepsOf(BLACK)};

template <std::size_t N, class Visit>
bool forEachStep(FieldIndex from, FieldSet fields, const std::array<int, N>& offsets,
                 Visit& visit) {
    for (const int offset : offsets) {
        if (contains(fields, from + offset) && !goesOn(visit, from + offset)) {
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
            if (contains(fields, to) && !goesOn(visit, to)) {
                return false;
            }
        }
    }
    return true;
}

} // namespace targetWalk

// Calls `visit(FieldIndex)` for each square of `fields`, a subset of the piece's targets, in move
// order: by direction, then by distance. Returns false if the visitor stopped. Inlined, because a
// call for each piece costs two instructions a node.
template <class Visit>
[[gnu::always_inline]] inline bool forEachTarget(const PieceTargets& piece, FieldSet fields,
                                                 Color color, Visit visit) {
    if (!hasSeveral(fields)) {
        return fields == NO_FIELDS || targetWalk::goesOn(visit, firstOf(fields));
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

// Calls `visit(Move)` with the move of a piece to `to`, which captures `captured`. For a promotion,
// calls it once for each piece that the pawn can become. Returns false if the visitor stopped.
template <class Visit>
bool forEachMoveTo(const PieceTargets& piece, FieldIndex to, PieceType captured, Color color,
                   Visit visit) {
    Move move = {piece.from, to, piece.type, captured, ORDINARY_MOVE, NO_PIECE};
    if (piece.type != PAWN || !isBeforePromotion(piece.from, color)) [[likely]] {
        return targetWalk::goesOn(visit, move);
    }
    for (const PieceType promotion : pawnPromotePieceTypes) {
        move.promotionPieceType = promotion;
        if (!targetWalk::goesOn(visit, move)) {
            return false;
        }
    }
    return true;
}

// The castling and the en passant capture of the side to move. makeCastling() leaves all members
// but the flag empty. makeEnPassant() requires canTakeEnPassant(from).
Move makeCastling(const Position& position, bool queenSide);
Move makeEnPassant(const Position& position, FieldIndex from);
