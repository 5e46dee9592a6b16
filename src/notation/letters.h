// The letters and fields that every text form of positions and moves is made of.
#pragma once

#include "board/field.h"

#include <iosfwd>
#include <span>
#include <string>

// The answer of a search for a letter or a field that found nothing. As a field it
// lies on the border.
inline constexpr int NOT_FOUND = 100;

// Letters by piece type, and by file or row. The pawn's small letter in the first
// table names the kind of piece, not its colour.
inline constexpr std::array<char, 7> pieceNameChars = {'0', 'p', 'R', 'N', 'B', 'Q', 'K'};
inline constexpr std::array<char, 7> pieceNameCharsLower = {'0', 'p', 'r', 'n', 'b', 'q', 'k'};
inline constexpr std::array<char, 7> pieceNameCharsUpper = {'0', 'P', 'R', 'N', 'B', 'Q', 'K'};
inline constexpr std::array<char, EDGE> fileNames = {'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H'};
inline constexpr std::array<char, EDGE> fileNamesLower = {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h'};
inline constexpr std::array<char, EDGE> rowNames = {'1', '2', '3', '4', '5', '6', '7', '8'};

// Index of the first `ch` from `start` up to, not including, `end`; else NOT_FOUND.
int getIndexOfChar(char ch, std::span<const char> array, int start, int end);
int getIndexOfChar(char ch, std::span<const char> array);
// The same in `arrayUpper`, and if it is not there, in `arrayLower`.
int getIndexOfChar(char ch, std::span<const char> arrayUpper, std::span<const char> arrayLower);

// The field of a file letter in either case and a rank digit; else NOT_FOUND.
FieldIndex parseField(char c1, char c2);
// File or row, 0 to 7; else NOT_FOUND.
int parse07File(char f);
int parse07Row(char row);
bool isFile(char c1);
bool isRow(char c1);
// The piece type of a letter in either case, except that a pawn has only its small letter;
// NO_PIECE for any other character.
PieceType parsePiece(char c);
// The same for the letters p, R, N, B, Q, K exactly.
PieceType parseUpperPiece(char c);
// The piece that a pawn can become, by its letter in either case; NO_PIECE for any other.
PieceType parsePromotionType(char c);
// The small letter of a promotion, or the empty text for NO_PIECE.
std::string promotionTypeToString(PieceType type);
// File letter and rank digit.
std::string fieldToString(FieldIndex fieldIndex, bool lowerCase);

// Writes a field; without a stream, to standard output.
void printField(std::ostream& stream, FieldIndex fieldIndex, bool lowerCase = false);
void printField(FieldIndex fieldIndex, bool lowerCase = false);
