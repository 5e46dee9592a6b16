#include "kestran-play/boardView.h"

#include "notation/letters.h"
#include "notation/longAlgebraicMove.h"
#include "support/terminal.h"

#include <array>

namespace {

// By kind of piece; the outlined symbols are White's where there are no colours.
constexpr ByType<const char*> SOLID = {" ", "♟", "♜", "♞", "♝", "♛", "♚"};
constexpr ByType<const char*> OUTLINED = {" ", "♙", "♖", "♘", "♗", "♕", "♔"};

// Of the 256 colours of a terminal. White pieces have a contrast of at least 4.5 to 1 on each
// field, black ones of at least 3.5.
constexpr std::array PIECE_COLOURS = {231, 16}; // by colour
constexpr std::array DARK_FIELDS = {94, 61};    // not marked, and marked
constexpr std::array LIGHT_FIELDS = {130, 98};

std::string symbolOf(const Field& field, const BoardStyle& style) {
    if (field.color == EMPTY) {
        return style.withColours ? " " : ".";
    }
    const bool isWhite = field.color == WHITE;
    if (style.withSymbols) {
        return isWhite && !style.withColours ? OUTLINED[field.pieceType] : SOLID[field.pieceType];
    }
    const auto& letters = isWhite ? pieceNameCharsUpper : pieceNameCharsLower;
    return {letters[at(field.pieceType)]};
}

std::string coloured(const std::string& text, bool isLight, bool isMarked, Color piece) {
    const auto& grounds = isLight ? LIGHT_FIELDS : DARK_FIELDS;
    return "\033[1;38;5;" + std::to_string(PIECE_COLOURS[piece == WHITE ? 0 : 1]) + ";48;5;" +
           std::to_string(grounds[isMarked ? 1 : 0]) + 'm' + text + "\033[0m";
}

// The first of these variables that is set names the character set of the terminal.
bool isUtf8() {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        if (const auto text = getVariable(name); !text.empty()) {
            return text.find("UTF-8") != text.npos || text.find("utf8") != text.npos;
        }
    }
    return false;
}

} // namespace

BoardStyle getUsualStyle() {
    return {.withColours = isColourWanted(), .withSymbols = isStandardOutputTerminal() && isUtf8()};
}

std::string drawBoard(const Position& position, const Move* last, const BoardStyle& style) {
    const bool isFlipped = style.bottom == BLACK;
    std::string files = "    ";
    std::string text;
    for (int line = 0; line < EDGE; ++line) {
        const int row = isFlipped ? line : EDGE - 1 - line;
        text.append("  ").append(1, rowNames[at(row)]).append(1, ' ');
        files.append(1, ' ').append(1, fileNamesLower[at(EDGE - 1 - row)]).append(1, ' ');
        for (int column = 0; column < EDGE; ++column) {
            const int file = isFlipped ? EDGE - 1 - column : column;
            const FieldIndex index = fieldOf(file, row);
            const Field& field = position.board[index];
            std::string cell = ' ' + symbolOf(field, style) + ' ';
            if (style.withColours) {
                const bool isMarked =
                    last != nullptr && (index == LongAlgebraicMove(*last).getFrom() ||
                                        index == LongAlgebraicMove(*last).getTo());
                cell = coloured(cell, (row + file) % 2 != 0, isMarked, field.color);
            }
            text += cell;
        }
        text += '\n';
    }
    return text + files + '\n';
}
