// One half move.
#pragma once

#include "board/field.h"

#include <span>

// Marks castlings and en passant captures. The castling with flag f uses castling right f - 1.
enum MoveFlag : std::int8_t {
    ORDINARY_MOVE = 0,
    WHITE_QUEEN_SIDE = 1,
    WHITE_KING_SIDE = 2,
    BLACK_QUEEN_SIDE = 3,
    BLACK_KING_SIDE = 4,
    EN_PASSANT = 5,
};

// ---- Castling rights: 0 White queen side, 1 White king side, 2 and 3 the same for Black ----

inline constexpr int CASTLES = 4;

template <class Element> using ByRight = Indexed<int, Element, CASTLES>;

// The castling right of a colour and a side of the board.
constexpr int rightOf(Color color, bool queenSide) {
    return 2 * color + (queenSide ? 0 : 1);
}
// The flag of a castling.
constexpr MoveFlag castlingFlag(Color color, bool queenSide) {
    return static_cast<MoveFlag>(rightOf(color, queenSide) + 1);
}

// The squares that king and rook leave and reach in a castling.
struct CastlingFields {
    FieldIndex kingFrom;
    FieldIndex kingTo;
    FieldIndex rookFrom;
    FieldIndex rookTo;
};

inline constexpr ByRight<CastlingFields> castlingFields = {{{
    {E1, C1, A1, D1},
    {E1, G1, H1, F1},
    {E8, C8, A8, D8},
    {E8, G8, H8, F8},
}}};

// A castling is identified by its flag alone: its `from`, `to` and `pieceMoved` have no meaning,
// its squares are in castlingFields.
struct Move {
    FieldIndex from;              // the square that the piece leaves
    FieldIndex to;                // the square that it reaches
    PieceType pieceMoved;         // PAWN if the move promotes
    PieceType pieceCaptured;      // NO_PIECE if none; PAWN for en passant
    MoveFlag castle_ep_flag;      // castling, en passant, or neither
    PieceType promotionPieceType; // NO_PIECE, or what the pawn becomes

    bool isCastle() const {
        return WHITE_QUEEN_SIDE <= castle_ep_flag && castle_ep_flag <= BLACK_KING_SIDE;
    }
    // Whether the move restarts the half-move clock.
    bool resetsClock() const {
        return !isCastle() && (pieceMoved == PAWN || pieceCaptured != NO_PIECE);
    }
    // The square of the captured piece: `to`, or the square beside `from` for en passant.
    // Requires a capture.
    FieldIndex getCapturedField() const {
        return castle_ep_flag == EN_PASSANT ? fieldOf(fileOf(to), rowOf(from)) : to;
    }
    // The squares of a castling. Requires isCastle().
    const CastlingFields& getCastlingFields() const { return castlingFields[castle_ep_flag - 1]; }
};

static_assert(sizeof(Move) == 6, "a move fits in six bytes");

// Whether both records describe the same move. If `a` is a castling, compares only the flags;
// otherwise compares everything but the flags.
bool testMoveEquality(const Move& a, const Move& b);

// An upper bound on the pseudo-legal moves of a position that the engine accepts: a side has
// one king (8 moves, 2 castlings) and at most 15 other pieces, none of which has more moves
// than a queen in the open (27).
inline constexpr int MAX_MOVES = (PIECES_PER_SIDE - 1) * 27 + 8 + 2;

// Room for the moves of a position.
struct MoveArray : Indexed<int, Move, MAX_MOVES> {
    // The first `count` moves. Requires 0 <= count <= MAX_MOVES.
    std::span<const Move> first(int count) const {
        return {elements.data(), checkedIndex(count, MAX_MOVES + 1)};
    }
};
