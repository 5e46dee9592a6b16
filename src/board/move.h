// One half move.
#pragma once

#include "board/field.h"

// What is special about a move. Castling f spends the right f - 1.
enum MoveFlag : std::int8_t {
    ORDINARY_MOVE = 0,
    WHITE_QUEEN_SIDE = 1,
    WHITE_KING_SIDE = 2,
    BLACK_QUEEN_SIDE = 3,
    BLACK_KING_SIDE = 4,
    EN_PASSANT = 5,
};

inline constexpr int CASTLES = 4; // castling rights of a position

template <class Element> using ByRight = Indexed<int, Element, CASTLES>;

// The fields that a castling touches.
struct CastlingFields {
    FieldIndex kingFrom;
    FieldIndex kingTo;
    FieldIndex rookFrom;
    FieldIndex rookTo;
};

// By castling right, which is castle_ep_flag - 1.
inline constexpr ByRight<CastlingFields> castlingFields = {{{
    {E1, C1, A1, D1},
    {E1, G1, H1, F1},
    {E8, C8, A8, D8},
    {E8, G8, H8, F8},
}}};

// The castling of a colour to the queen's or the king's side.
constexpr MoveFlag castlingFlag(Color color, bool queenSide) {
    return static_cast<MoveFlag>(2 * color + (queenSide ? 1 : 2));
}

// A castling is known by its flag alone: its `from`, `to` and `pieceMoved` carry no
// meaning, its fields stand in castlingFields.
struct Move {
    FieldIndex from;              // field the piece leaves
    FieldIndex to;                // field the piece reaches
    PieceType pieceMoved;         // a promoting pawn is still a pawn here
    PieceType pieceCaptured;      // NO_PIECE if none; a pawn for en passant
    MoveFlag castle_ep_flag;      // castling, en passant, or neither
    PieceType promotionPieceType; // NO_PIECE, or what the pawn becomes

    // Clears captured piece, flag and promotion; leaves the other three alone.
    void init();
    bool isCastle() const {
        return WHITE_QUEEN_SIDE <= castle_ep_flag && castle_ep_flag <= BLACK_KING_SIDE;
    }
    // The field of the piece that a capturing move takes: `to`, or the field beside
    // `from` for en passant.
    FieldIndex getCapturedField() const {
        return castle_ep_flag == EN_PASSANT ? fieldOf(fileOf(to), rowOf(from)) : to;
    }
    // The fields of a castling. Requires isCastle().
    const CastlingFields& getCastlingFields() const { return castlingFields[castle_ep_flag - 1]; }
};

static_assert(sizeof(Move) == 6, "a move fits in six bytes");

// Fills a move that neither castles, promotes nor takes en passant.
inline void initMove(Move& move, FieldIndex from, FieldIndex to, PieceType pieceMoved,
                     PieceType pieceCaptured) {
    move = {from, to, pieceMoved, pieceCaptured, ORDINARY_MOVE, NO_PIECE};
}

// Whether both records mean the same move. If the flag of `a` is neither 0 nor that of en
// passant, the flags decide. Any other `a` is compared by fields, moved and captured piece
// and promotion, and the flag of `b` plays no part.
bool testMoveEquality(const Move& a, const Move& b);

// The most pseudo-legal moves of any position that the engine accepts: a side has
// one king (8 moves, 2 castlings) and at most 15 further pieces, none of which has
// more moves than a queen in the open (27). Every move array holds this many.
inline constexpr int MAX_MOVES = (PIECES_PER_SIDE - 1) * 27 + 8 + 2;

// Room for the moves of a position, indexed by their number.
using MoveArray = Indexed<int, Move, MAX_MOVES>;
