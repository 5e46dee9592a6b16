// Letters of pieces, files and rows, for all text forms of positions and moves.
#pragma once

#include "board/field.h"

#include <iosfwd>
#include <span>
#include <string>

// The result of a failed search for a letter or a square. As a square, it is on the border.
inline constexpr int NOT_FOUND = 100;

// The letters by piece type, and by file or row. pieceNameChars is for moves of either colour:
// small for a pawn, capital for the other pieces.
inline constexpr std::array<char, 7> pieceNameChars = {'0', 'p', 'R', 'N', 'B', 'Q', 'K'};
inline constexpr std::array<char, 7> pieceNameCharsLower = {'0', 'p', 'r', 'n', 'b', 'q', 'k'};
inline constexpr std::array<char, 7> pieceNameCharsUpper = {'0', 'P', 'R', 'N', 'B', 'Q', 'K'};
inline constexpr std::array<char, EDGE> fileNames = {'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H'};
inline constexpr std::array<char, EDGE> fileNamesLower = {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h'};
inline constexpr std::array<char, EDGE> rowNames = {'1', '2', '3', '4', '5', '6', '7', '8'};

// Index of the first `ch` in [start, end), or NOT_FOUND.
int getIndexOfChar(char ch, std::span<const char> array, int start, int end);
int getIndexOfChar(char ch, std::span<const char> array);
// Searches `arrayUpper`, then `arrayLower`.
int getIndexOfChar(char ch, std::span<const char> arrayUpper, std::span<const char> arrayLower);

// The square of a file letter in either case and a rank digit, or NOT_FOUND.
FieldIndex parseField(char c1, char c2);
// File or row, 0 to 7, or NOT_FOUND.
int parse07File(char f);
int parse07Row(char row);
// Whether the character is a file letter in either case; whether it is a rank digit.
bool isFile(char c1);
bool isRow(char c1);
// The piece type of a letter in either case (but not 'P'), or NO_PIECE.
PieceType parsePiece(char c);
// The piece type of one of the letters p, R, N, B, Q and K; NO_PIECE for any other.
PieceType parseUpperPiece(char c);
// The piece to which a pawn promotes, by its letter in either case, or NO_PIECE.
PieceType parsePromotionType(char c);
// The small letter of the piece, or an empty text for NO_PIECE.
std::string promotionTypeToString(PieceType type);
// File letter and rank digit: E4, or e4.
std::string fieldToString(FieldIndex fieldIndex, bool lowerCase);
// Prints the text of fieldToString().
void printField(std::ostream& stream, FieldIndex fieldIndex, bool lowerCase = false);
