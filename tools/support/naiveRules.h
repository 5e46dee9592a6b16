// The rules of chess in a plain form that shares no code with the engine, to check its moves
// against.
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
    // Whether there is more than one knight or bishop beside the kings.
    bool canAnyoneMate() const;
    bool isWhiteToMove() const { return whiteToMove; }
    // Half moves since the last pawn move or capture.
    int getHalfMoveClock() const { return halfMoveClock; }
    // The first four fields of FEN, with the en passant square only if a pawn of the
    // side to move stands beside the one that has just made its double step. Two
    // positions that count as the same have the same text.
    std::string getIdentity() const;

private:
    struct Step {
        int from;
        int to;
        char promotion; // a small letter, or 0
    };

    bool isOwn(int square) const;   // holds a piece of the side to move
    bool isEnemy(int square) const; // holds a piece of the other side
    bool isFree(int square) const;
    // Whether all fields strictly between two on a line are free.
    bool isPathFree(int from, int to) const;
    // Whether the piece on `from` attacks `to`, whatever stands there.
    bool attacks(int from, int to) const;
    bool isAttackedByEnemy(int square) const;

    void addPawnSteps(std::vector<Step>& steps, int from, int to) const;
    void addPushes(std::vector<Step>& steps, int from) const;
    void addCastlings(std::vector<Step>& steps) const;
    // The steps of the side to move, some of which may leave its king attacked.
    std::vector<Step> getSteps() const;
    // Whether a step of these leaves its own king safe.
    bool isLegal(const Step& step) const;
    void loseCastling(int square);
    void make(const Step& step);
    bool isEnPassantUsable() const;

    static std::string toText(const Step& step);

    // FEN letters by row * 8 + file, '.' for an empty square.
    std::array<char, 64> squares;
    bool whiteToMove;
    std::string castling; // the letters of FEN that still hold
    int enPassant;        // square that a pawn has just passed over, or -1
    int halfMoveClock;
};
