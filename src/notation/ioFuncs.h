// Text forms of positions and moves: FEN, the letters and fields that the other
// notations are made of, and the wordy forms for logs and consoles.
#pragma once

#include "board/boardRepresentation.h"
#include "search/searchRepresentation.h"

#include <iosfwd>
#include <span>
#include <string>
#include <vector>

// The answer of a search for a letter or a field that found nothing. As a field it
// lies on the border.
inline constexpr FieldIndex NOT_FOUND = 100;

// Letters by piece type, and by file or row. The pawn's small letter in the first
// table names the kind of piece, not its colour.
inline constexpr std::array<char, 7> pieceNameChars = {'0', 'p', 'R', 'N', 'B', 'Q', 'K'};
inline constexpr std::array<char, 7> pieceNameCharsLower = {'0', 'p', 'r', 'n', 'b', 'q', 'k'};
inline constexpr std::array<char, 7> pieceNameCharsUpper = {'0', 'P', 'R', 'N', 'B', 'Q', 'K'};
inline constexpr std::array<char, 8> fileNames = {'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H'};
inline constexpr std::array<char, 8> fileNamesLower = {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h'};
inline constexpr std::array<char, 8> rowNames = {'1', '2', '3', '4', '5', '6', '7', '8'};

// ---- FEN ----

// Rebuilds `position` from FEN text of four to six fields. The text is believed as
// it stands, whatever it holds; fenCheck.h tells whether it can be played.
void setFenNotation(Position& position, const std::string& fenString);

// The part of it that reads board, side, rights and en passant field into a freshly
// reset position. Returns the tokens: eight ranks, then the other fields.
std::vector<std::string> setFenEpdCommon(Position& position, const std::string& fenString);

// The tokens of FEN text: the first seven cuts are at "/", the rest at single blanks.
std::vector<std::string> getFenTokens(const std::string& input);

// The position in FEN with five fields: no move number.
std::string getFen(const Position& position);

// ---- Letters and fields ----

// Index of the first `ch` from `start` up to, not including, `end`; else NOT_FOUND.
FieldIndex getIndexOfChar(char ch, std::span<const char> array, int start, int end);
FieldIndex getIndexOfChar(char ch, std::span<const char> array);
// The same in `arrayUpper`, and if it is not there, in `arrayLower`.
FieldIndex getIndexOfChar(char ch, std::span<const char> arrayUpper,
                          std::span<const char> arrayLower);

// The field of a file letter in either case and a rank digit; else NOT_FOUND.
FieldIndex parseField(char c1, char c2);
// File or row, 0 to 7; else NOT_FOUND.
int parse07File(char f);
int parse07Row(char row);
bool isFile(char c1);
bool isRow(char c1);
// The piece type of a letter in either case; 0 if it is none.
PieceType parsePiece(char c);
// The same for the letters p, R, N, B, Q, K exactly.
PieceType parseUpperPiece(char c);
// The piece that a pawn can become, by its letter in either case; 0 for any other.
PieceType parsePromotionType(char c);
// The small letter of a promotion, or the empty text for 0.
std::string promotionTypeToString(PieceType type);
// File letter and rank digit.
std::string fieldToString(FieldIndex fieldIndex, bool lowerCase);

// ---- Wordy forms. Without a stream they write to standard output ----

void printField(std::ostream& stream, FieldIndex fieldIndex, bool lowerCase = false);
void printField(FieldIndex fieldIndex, bool lowerCase = false);

// A move with its piece and capital fields: pE2-E4, NG1xF3, 0-0, pE5xD6(e.p).
void printMove(std::ostream& stream, const Move& move);
void printMove(const Move& move);

// The same, in parentheses if it is a quiescence move, with "(h)" behind a table
// move and "(o)" behind a book move.
void printVariantMove(std::ostream& stream, const VariantMove& move);
void printVariantMove(const VariantMove& move);

// The moves of a line in the order of play, each with a blank behind it. `moves` is
// stored back to front. With a Variant, the score and a line end follow.
void printVariant(std::ostream& stream, const VariantMove* moves, int varLength);
void printVariant(const VariantMove* moves, int varLength);
void printVariant(std::ostream& stream, const Variant& variant);
void printVariant(const Variant& variant);
std::string variantToString(const Variant& variant);

// Reads what printMove() writes, with fields in either case, for the side `color`. For
// en passant the text must end in "(e.p.)", with a full stop that printMove() leaves out.
// A castling leaves `from`, `to` and `pieceMoved` unset; 7 as captured piece says
// only that something is taken. A text that is too short, or that has neither '-'
// nor 'x' in its place, gives a move whose missing fields are NOT_FOUND; the latter
// also writes a message to standard output.
Move parseMove(const std::string& str, Color color);

// A score in words if it is a mate of at most 50 plies or so, else as a number.
void printEval(int eval);
// The score of a mate in so many moves, negative for the side that is mated.
int mateInEval(int mateIn);
// The moves to mate that printEval() would tell, 0 if it would tell a number.
int mateInFromEval(int eval);

// The piece list, four entries a line.
void printPieces(const Position& position);
// The board as a diagram, White at the bottom.
void printPosition(const Position& position);
std::ostream& operator<<(std::ostream& stream, const Position& position);
