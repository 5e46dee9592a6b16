#include "notation/letters.h"

#include <ostream>

namespace {

PieceType pieceTypeOf(int index) {
    return index != NOT_FOUND ? static_cast<PieceType>(index) : NO_PIECE;
}

} // namespace

int getIndexOfChar(char ch, std::span<const char> array, int start, int end) {
    for (int i = start; i < end; ++i) {
        if (array[at(i)] == ch) {
            return i;
        }
    }
    return NOT_FOUND;
}

int getIndexOfChar(char ch, std::span<const char> array) {
    return getIndexOfChar(ch, array, 0, static_cast<int>(array.size()));
}

int getIndexOfChar(char ch, std::span<const char> arrayUpper, std::span<const char> arrayLower) {
    const int index = getIndexOfChar(ch, arrayUpper);
    return index != NOT_FOUND ? index : getIndexOfChar(ch, arrayLower);
}

FieldIndex parseField(char c1, char c2) {
    return isFile(c1) && isRow(c2) ? fieldOf(parse07File(c1), parse07Row(c2))
                                   : static_cast<FieldIndex>(NOT_FOUND);
}

int parse07File(char f) {
    return getIndexOfChar(f, fileNames, fileNamesLower);
}

int parse07Row(char row) {
    return getIndexOfChar(row, rowNames);
}

bool isFile(char c1) {
    return parse07File(c1) != NOT_FOUND;
}

bool isRow(char c1) {
    return parse07Row(c1) != NOT_FOUND;
}

PieceType parsePiece(char c) {
    return pieceTypeOf(getIndexOfChar(c, pieceNameChars, pieceNameCharsLower));
}

PieceType parseUpperPiece(char c) {
    return pieceTypeOf(getIndexOfChar(c, pieceNameChars));
}

PieceType parsePromotionType(char c) {
    const PieceType type = parsePiece(c);
    return ROOK <= type && type <= QUEEN ? type : NO_PIECE;
}

std::string promotionTypeToString(PieceType type) {
    return type == NO_PIECE ? "" : std::string(1, pieceNameCharsLower[at(type)]);
}

std::string fieldToString(FieldIndex fieldIndex, bool lowerCase) {
    const char file = static_cast<char>((lowerCase ? 'a' : 'A') + fieldIndex % ROW_STEP - 1);
    const char row = static_cast<char>('/' + fieldIndex / ROW_STEP);
    return {file, row};
}

void printField(std::ostream& stream, FieldIndex fieldIndex, bool lowerCase) {
    stream << fieldToString(fieldIndex, lowerCase);
}
