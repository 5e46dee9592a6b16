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
constexpr int LIGHT_FIELD = 130;
constexpr int DARK_FIELD = 94;
constexpr int MARKED_LIGHT_FIELD = 98;
constexpr int MARKED_DARK_FIELD = 61;
constexpr int WHITE_PIECE = 231;
constexpr int BLACK_PIECE = 16;

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

std::string coloured(const std::string& text, bool isLight, bool isMarked, bool isWhitePiece) {
    const int ground = isMarked ? (isLight ? MARKED_LIGHT_FIELD : MARKED_DARK_FIELD)
                                : (isLight ? LIGHT_FIELD : DARK_FIELD);
    return "\033[1;38;5;" + std::to_string(isWhitePiece ? WHITE_PIECE : BLACK_PIECE) + ";48;5;" +
           std::to_string(ground) + 'm' + text + "\033[0m";
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
            std::string cell;
            cell.append(1, ' ').append(symbolOf(field, style)).append(1, ' ');
            if (style.withColours) {
                const bool isMarked =
                    last != nullptr && (index == LongAlgebraicMove(*last).getFrom() ||
                                        index == LongAlgebraicMove(*last).getTo());
                cell = coloured(cell, (row + file) % 2 != 0, isMarked, field.color == WHITE);
            }
            text += cell;
        }
        text += '\n';
    }
    return text + files + '\n';
}
