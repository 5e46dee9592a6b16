// The vocabulary of the engine: positions, moves and the numbering of the board.
//
// A Position holds the same facts twice, as a mailbox of 120 fields and as a list
// of 32 pieces. Move generation walks the list and probes the mailbox, attack
// detection probes the mailbox, the evaluation walks the list.
#pragma once

#include <array>
#include <cstdint>

// Index of a field of the mailbox, 0 to 119. The field of file f (0 for a) and row
// r (0 for rank 1) is 21 + f + 10 * r; all others are border. The border ends
// every ray and every jump, so that no code tests an index against the array.
using FieldIndex = std::int8_t;

// 0 White, 1 Black. As the state of a field also 2 empty, 3 border.
using Color = std::int8_t;
inline constexpr Color WHITE = 0;
inline constexpr Color BLACK = 1;
inline constexpr Color EMPTY = 2;
inline constexpr Color BORDER = 3;

// The other side.
constexpr Color opposite(Color color) {
    return static_cast<Color>(1 - color);
}

using PieceType = std::int8_t;
inline constexpr PieceType NO_PIECE = 0;
inline constexpr PieceType PAWN = 1;
inline constexpr PieceType ROOK = 2;
inline constexpr PieceType KNIGHT = 3;
inline constexpr PieceType BISHOP = 4;
inline constexpr PieceType QUEEN = 5;
inline constexpr PieceType KING = 6;

inline constexpr int BOARD_SIZE = 120;        // fields, with the border
inline constexpr int PIECES_PER_SIDE = 16;    // entries of the list a colour
inline constexpr FieldIndex FIRST_FIELD = 21; // a1
inline constexpr FieldIndex LAST_FIELD = 98;  // h8
inline constexpr FieldIndex ROW_STEP = 10;    // from a field to the one a rank up

// Worth of a piece by its type, in thousandths of a pawn.
inline constexpr std::array<int, 7> pieceEvaluationValues = {0, 1000, 5000, 3000, 3100, 9500, 0};

// Values of Move::castle_ep_flag. Flag f of a castling spends the right f - 1.
inline constexpr std::int8_t ORDINARY_MOVE = 0;
inline constexpr std::int8_t WHITE_QUEEN_SIDE = 1;
inline constexpr std::int8_t WHITE_KING_SIDE = 2;
inline constexpr std::int8_t BLACK_QUEEN_SIDE = 3;
inline constexpr std::int8_t BLACK_KING_SIDE = 4;
inline constexpr std::int8_t EN_PASSANT = 5;

inline constexpr int CASTLES = 4; // castling rights of a position

// The fields that a castling touches.
struct CastlingFields {
    FieldIndex kingFrom;
    FieldIndex kingTo;
    FieldIndex rookFrom;
    FieldIndex rookTo;
};

// By castling right, which is castle_ep_flag - 1.
inline constexpr std::array<CastlingFields, CASTLES> castlingFields = {{
    {25, 23, 21, 24},
    {25, 27, 28, 26},
    {95, 93, 91, 94},
    {95, 97, 98, 96},
}};

// Tables by colour.
inline constexpr std::array<std::int8_t, 2> pawnOnePieceAheadOffset = {10, -10};
inline constexpr std::array<std::int8_t, 2> barva_OffsetDvePoleDopredu = {20, -20}; // two ahead
inline constexpr std::array<std::int8_t, 2> barva_OffsetPoleDozadu = {-10, 10};     // one back
// First and last field of the rank that the colour's pawns start on.
inline constexpr std::array<FieldIndex, 2> pawnStartingRowIndexMin = {31, 81};
inline constexpr std::array<FieldIndex, 2> PawnStartingRowIndexMax = {38, 88};
// First and last field of the rank from which a pawn's next step promotes.
inline constexpr std::array<FieldIndex, 2> barva_pesciPremenaMin = {81, 31};
inline constexpr std::array<FieldIndex, 2> barva_pesciPremenaMax = {88, 38};
// First entry of the colour in the piece list, and one past its last.
inline constexpr std::array<int, 2> PiecesStart = {0, 16};
inline constexpr std::array<int, 2> PiecesEnd = {16, 32};
// Entry of the colour's king.
inline constexpr std::array<int, 2> KingIndex = {0, 16};

// Indexes an array by a colour, a piece type, a field or a list entry. Requires a
// value that is not negative.
constexpr std::size_t at(int index) {
    return static_cast<std::size_t>(index);
}

// One field of the mailbox. Only `color` is written when a piece leaves: the other
// two members of an empty field are left-overs, so look at `color` first.
struct Field {
    Color color;                  // state of the field, 0 to 3
    PieceType pieceType;          // the piece that stands here
    std::int8_t pieceIndexInList; // its entry in Position::pieces
};

// One entry of the piece list. An entry is never reused for another piece: a
// captured piece leaves it free, a promoted pawn keeps it and changes its type.
struct Piece {
    PieceType pieceType;      // 0 marks a free entry
    FieldIndex boardPosition; // field it stands on; a left-over in a free entry

    int get07Row() const;  // row 0 to 7 of boardPosition
    int get07File() const; // file 0 to 7 of boardPosition
};

// Values of Position::check.
inline constexpr std::int8_t CHECK_UNKNOWN = 0;
inline constexpr std::int8_t IS_CHECK = 1;
inline constexpr std::int8_t IS_NOT_CHECK = 2;

// A position: plain data, copied by value. Built by initializeToStartPosition() or
// setFenNotation(), changed by doMove() and undoMove() alone.
struct Position {
    std::array<Piece, 2 * PIECES_PER_SIDE> pieces; // entries 0 to 15 White's, 16 to 31 Black's
    Color colorToMove;                             // the side to move
    std::array<Field, BOARD_SIZE> board;           // the mailbox
    FieldIndex epField; // the pawn that has just made a double step, or 0
    // Rights to castle: 0 White queen side, 1 White king side, 2 Black queen side,
    // 3 Black king side. Kept by doMove() as kings and rooks move or are taken.
    std::array<bool, CASTLES> castles;
    std::int8_t check;           // whether the side to move is in check; see isInCheck()
    std::array<int, 2> material; // sum of pieceEvaluationValues by colour
    int moveEvaluation;          // +10 for each White castling so far, -10 for each Black one
    int halfMoveClock;           // half moves since the last pawn move or capture
    std::uint64_t hash;          // the Polyglot key, see getPositionZobristHash()

    Color oppositeColorToMove() const { return opposite(colorToMove); }

    // File and row, 0 to 7, of a field of the board.
    static constexpr int get07File(int index) { return (index - 1) % 10; }
    static constexpr int get07Row(int index) { return (index - 20) / 10; }
    // The field of a file and a row, both 0 to 7.
    static constexpr FieldIndex getIndexFrom07Notation(int file07, int row07) {
        return static_cast<FieldIndex>(FIRST_FIELD + file07 + ROW_STEP * row07);
    }
};

inline int Piece::get07Row() const {
    return Position::get07Row(boardPosition);
}

inline int Piece::get07File() const {
    return Position::get07File(boardPosition);
}

static_assert(Position::getIndexFrom07Notation(0, 0) == FIRST_FIELD);
static_assert(Position::getIndexFrom07Notation(7, 7) == LAST_FIELD);
static_assert(Position::get07File(Position::getIndexFrom07Notation(4, 7)) == 4);
static_assert(Position::get07Row(Position::getIndexFrom07Notation(4, 7)) == 7);

// One half move. A castling is known by its flag alone: its `from`, `to` and
// `pieceMoved` carry no meaning, its fields stand in castlingFields.
struct Move {
    FieldIndex from;              // field the piece leaves
    FieldIndex to;                // field the piece reaches
    PieceType pieceMoved;         // a promoting pawn is still a pawn here
    PieceType pieceCaptured;      // 0 if none; a pawn for en passant
    std::int8_t castle_ep_flag;   // 0 ordinary, 1 to 4 castling, 5 en passant
    PieceType promotionPieceType; // 0, or what the pawn becomes

    // Clears captured piece, flag and promotion; leaves the other three alone.
    void init();
    bool isCastle() const {
        return WHITE_QUEEN_SIDE <= castle_ep_flag && castle_ep_flag <= BLACK_KING_SIDE;
    }
    // The field of the piece that a capturing move takes: `to`, or the field beside
    // `from` for en passant.
    FieldIndex getCapturedField() const;
    // The fields of a castling. Requires isCastle().
    const CastlingFields& getCastlingFields() const {
        return castlingFields[at(castle_ep_flag - 1)];
    }
};

static_assert(sizeof(Move) == 6, "a move fits in six bytes");
static_assert(sizeof(Field) == 3, "a field fits in three bytes");

// The most pseudo-legal moves of any position that the engine accepts: a side has
// one king (8 moves, 2 castlings) and at most 15 further pieces, none of which has
// more moves than a queen in the open (27). Every move array holds this many.
inline constexpr int MAX_MOVES = (PIECES_PER_SIDE - 1) * 27 + 8 + 2;
using MoveArray = std::array<Move, MAX_MOVES>;

// The undo record of one move, owned by the caller. doMove() saves into it what
// the move itself does not tell, undoMove() puts it back.
struct DoMoveContext {
    std::array<bool, CASTLES> lostCastles; // rights that the move cleared
    FieldIndex epField;                    // epField before the move
    std::int8_t tempPieceCapturedIndex;    // list entry of the captured piece, if any
    int halfMoveClock;                     // halfMoveClock before the move
    std::uint64_t originalHash;            // hash before the move

    // Clears everything but originalHash. doMove() only ever sets lostCastles, so
    // this comes before each doMove() whose position is to be used.
    void init();
};

// An empty board with its border, White to move, no rights. Leaves `hash` alone.
void resetPosition(Position& position);

// Writes the 32 pieces of the initial array into the mailbox, and nothing else.
void setPiecesForStartPosition(Position& position);

// Rebuilds the piece list, and the list index of every occupied field, from the
// mailbox: king, pawns, rooks, knights, bishops, queens, each from a1 to h8. The
// order decides the order of generated moves. A colour's pieces past the 16th find
// no entry and are left out of the list.
void reflectBoardToPieces(Position& position);

// Works out `material` from the piece list.
void countMaterial(Position& position);

// The start position, complete.
void initializeToStartPosition(Position& position);

// Worth of a colour's pieces in the list, in thousandths of a pawn.
int materialForColor(const Position& position, Color color);

// Worth of all pieces, kings counting 0, in thousandths of a pawn.
int totalMaterial(const Position& position);

// Fills a move that neither castles, promotes nor takes en passant.
void initMove(Move& move, FieldIndex from, FieldIndex to, PieceType pieceMoved,
              PieceType pieceCaptured);
