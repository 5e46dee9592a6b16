// The rules of chess, as plainly as can be: a move gives a new position, and whatever is asked of a
// position is computed from its pieces. Shares no code with the engine, whose moves it checks.
// Fields run from 21 for a1, in rows of ten, to 98 for h8.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace plain {

enum Colour { WHITE, BLACK, EMPTY, OUTSIDE };
enum Type { NONE, PAWN, ROOK, KNIGHT, BISHOP, QUEEN, KING };

// By right to castle: White long, White short, Black long, Black short.
inline constexpr std::array<int, 4> ROOK_FROM = {21, 28, 91, 98};

constexpr std::size_t at(int index) {
    return static_cast<std::size_t>(index);
}
constexpr int fileOf(int field) {
    return field % 10 - 1;
}
constexpr int rowOf(int field) {
    return field / 10 - 2;
}

struct Move {
    int from; // of the king, if it castles
    int to;
    int piece;
    int captured = NONE;
    int flag = 0; // 1 to 4 for castling with the right 0 to 3, 5 for en passant
    int promotion = NONE;

    bool isCastle() const { return 1 <= flag && flag <= 4; }
    // As UCI writes it.
    std::string text() const;
};

struct Piece {
    int type = NONE; // NONE if it is taken, or was never there
    int field = 0;
};

class Position {
public:
    // A position in FEN of at least four fields, which must be sound.
    explicit Position(
        const std::string& fen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");

    // The moves of the side to move, in the order of the engine. Some of them may leave its king
    // attacked.
    std::vector<Move> moves() const;
    // The position after one of these, unless it leaves the mover's king attacked.
    std::optional<Position> play(const Move& move) const;
    // The legal moves as UCI writes them, sorted.
    std::vector<std::string> legalMoves() const;
    // Plays a move if it is legal. Returns whether it was.
    bool play(const std::string& text);

    // Of the side to move.
    bool isInCheck() const { return isAttacked(pieces[at(16 * side)].field, 1 - side); }
    // Whether a pawn can capture en passant, even if that leaves its king attacked.
    bool canTakePassed() const;
    // Whether there is a pawn, rook or queen, or more than one knight or bishop.
    bool canAnyoneMate() const;
    // The first four fields of FEN, with the en passant square only if canTakePassed(). Two
    // positions that count as the same have the same text.
    std::string identity() const;
    int colourAt(int field) const;

    std::array<Piece, 32> pieces;     // 16 White's, 16 Black's, in the order of their moves
    std::array<int, 120> board;       // by field: index into `pieces`, -1, or -2 for outside
    int side = WHITE;                 // to move
    int passed = 0;                   // field of the pawn that has just made a double step
    std::array<bool, 4> castles = {}; // rights
    int clock = 0;                    // half moves since a pawn moved or a piece was taken

private:
    int typeAt(int field) const { return pieces[at(board[at(field)])].type; } // of a piece
    bool isAttacked(int field, int attacker) const;
    void addMove(std::vector<Move>& moves, const Piece& piece, int to) const;
    void addMoves(std::vector<Move>& moves, const Piece& piece) const;
    void addCastlings(std::vector<Move>& moves) const;
};

} // namespace plain
