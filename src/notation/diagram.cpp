#include "notation/diagram.h"

#include "notation/letters.h"

#include <cstdio>
#include <iostream>
#include <string>

namespace {

// Text line 0 to 3 of one square of the diagram, six characters wide.
std::string diagramField(const Position& position, int file, int row, int line) {
    constexpr char SOLID_BLOCK = '\xDB'; // in code page 437
    const char fill = (row + file) % 2 != 0 ? ' ' : SOLID_BLOCK;
    const Field& field = position.board[fieldOf(file, row)];
    if (field.color == EMPTY || line == 0 || line == 3) {
        return std::string(6, fill);
    }
    std::string name = "  ";
    if (line == 1) {
        name = {field.color == WHITE ? 'B' : 'C', "xPRNBQK"[at(field.pieceType)]};
    }
    return fill + (' ' + name + ' ') + fill;
}

std::string diagram(const Position& position) {
    std::string text;
    for (int row = EDGE - 1; row >= 0; --row) {
        for (int line = 0; line < 4; ++line) {
            for (int file = 0; file < EDGE; ++file) {
                text += diagramField(position, file, row, line);
            }
            text += '\n';
        }
    }
    return text;
}

} // namespace

void printPieces(const Position& position) {
    printPieces(std::cout, position);
}

void printPieces(std::ostream& stream, const Position& position) {
    for (int i = 0; i < LIST_ENTRIES; ++i) {
        const Piece& piece = position.pieces[i];
        stream << i << pieceNameChars[at(piece.pieceType)] << '-'
               << static_cast<int>(piece.boardPosition) << "  " << (i % 4 == 3 ? "\n" : "");
    }
}

void printPosition(const Position& position) {
    std::printf("%s", diagram(position).c_str());
}

std::ostream& operator<<(std::ostream& stream, const Position& position) {
    return stream << diagram(position);
}
