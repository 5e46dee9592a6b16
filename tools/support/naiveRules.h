// The rules of chess once more, written for plainness alone and sharing no code with
// the engine: the twin that the engine's moves are held against.
#pragma once

#include <array>
#include <string>
#include <vector>

class NaiveBoard {
public:
    // The start position.
    NaiveBoard();
    // A position in FEN of at least four fields, which must be sound.
    explicit NaiveBoard(const std::string& fen);

    // The legal moves as long algebraic texts, castling as the king's move, sorted.
    std::vector<std::string> getLegalMoves() const;
    // Plays a move if it is legal; whether it was.
    bool play(const std::string& move);
    // Whether the side to move is in check.
    bool isInCheck() const;
    bool isWhiteToMove() const { return whiteToMove; }
    // Half moves since the last pawn move or capture.
    int getHalfMoveClock() const { return halfMoveClock; }
    // The first four fields of FEN, with the en passant field only if a pawn of the
    // side to move stands beside the one that has just made its double step. Two
    // positions that count as the same have the same text.
    std::string getIdentity() const;

private:
    // FEN letters by row * 8 + file, '.' for an empty square.
    std::array<char, 64> squares;
    bool whiteToMove;
    std::string castling; // the letters of FEN that still hold
    int enPassant;        // square behind the pawn that has made a double step, or -1
    int halfMoveClock;
};
