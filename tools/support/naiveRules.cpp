#include "support/naiveRules.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <sstream>

namespace {

constexpr int NO_SQUARE = -1;

int fileOf(int square) {
    return square % 8;
}

int rowOf(int square) {
    return square / 8;
}

int squareAt(int file, int row) {
    return row * 8 + file;
}

std::size_t index(int square) {
    return static_cast<std::size_t>(square);
}

int squareFromName(const std::string& name) {
    return squareAt(name.at(0) - 'a', name.at(1) - '1');
}

std::string nameOf(int square) {
    return {static_cast<char>('a' + fileOf(square)), static_cast<char>('1' + rowOf(square))};
}

bool isWhitePiece(char piece) {
    return std::isupper(static_cast<unsigned char>(piece)) != 0;
}

char kindOf(char piece) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(piece)));
}

int sign(int number) {
    return (number > 0) - (number < 0);
}

} // namespace

NaiveBoard::NaiveBoard() : NaiveBoard("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1") {
}

NaiveBoard::NaiveBoard(const std::string& fen)
    : whiteToMove(true), enPassant(NO_SQUARE), halfMoveClock(0) {
    std::istringstream stream(fen);
    std::string board;
    std::string side;
    std::string rights;
    std::string passed;
    stream >> board >> side >> rights >> passed >> halfMoveClock;

    squares.fill('.');
    int file = 0;
    int row = 7;
    for (const char c : board) {
        if (c == '/') {
            file = 0;
            --row;
        } else if (std::isdigit(static_cast<unsigned char>(c)) != 0) {
            file += c - '0';
        } else {
            squares.at(index(squareAt(file, row))) = c;
            ++file;
        }
    }
    whiteToMove = side == "w";
    for (const char right : {'K', 'Q', 'k', 'q'}) {
        if (rights.find(right) != std::string::npos) {
            castling += right;
        }
    }
    if (passed.size() == 2) {
        enPassant = squareFromName(passed);
    }
}

bool NaiveBoard::isFree(int square) const {
    return squares[index(square)] == '.';
}

bool NaiveBoard::isOwn(int square) const {
    return !isFree(square) && isWhitePiece(squares[index(square)]) == whiteToMove;
}

bool NaiveBoard::isEnemy(int square) const {
    return !isFree(square) && isWhitePiece(squares[index(square)]) != whiteToMove;
}

bool NaiveBoard::isPathFree(int from, int to) const {
    const int step = squareAt(sign(fileOf(to) - fileOf(from)), sign(rowOf(to) - rowOf(from)));
    for (int square = from + step; square != to; square += step) {
        if (!isFree(square)) {
            return false;
        }
    }
    return true;
}

bool NaiveBoard::attacks(int from, int to) const {
    const char piece = squares[index(from)];
    const int files = std::abs(fileOf(to) - fileOf(from));
    const int rows = std::abs(rowOf(to) - rowOf(from));
    const bool straight = (files == 0) != (rows == 0);
    const bool diagonal = files == rows && files > 0;
    switch (kindOf(piece)) {
    case 'p':
        return files == 1 && rowOf(to) - rowOf(from) == (isWhitePiece(piece) ? 1 : -1);
    case 'n':
        return files * rows == 2;
    case 'k':
        return std::max(files, rows) == 1;
    case 'b':
        return diagonal && isPathFree(from, to);
    case 'r':
        return straight && isPathFree(from, to);
    case 'q':
        return (straight || diagonal) && isPathFree(from, to);
    default:
        return false;
    }
}

bool NaiveBoard::isAttackedByEnemy(int square) const {
    for (int from = 0; from < 64; ++from) {
        if (isEnemy(from) && attacks(from, square)) {
            return true;
        }
    }
    return false;
}

bool NaiveBoard::isInCheck() const {
    const auto king = std::ranges::find(squares, whiteToMove ? 'K' : 'k');
    return isAttackedByEnemy(static_cast<int>(king - squares.begin()));
}

bool NaiveBoard::canAnyoneMate() const {
    const auto count = [this](const std::string& kinds) {
        return std::ranges::count_if(
            squares, [&](char piece) { return kinds.find(kindOf(piece)) != std::string::npos; });
    };
    return count("prq") > 0 || count("nb") > 1;
}

void NaiveBoard::addPawnSteps(std::vector<Step>& steps, int from, int to) const {
    if (rowOf(to) != 0 && rowOf(to) != 7) {
        steps.push_back({from, to, 0});
        return;
    }
    for (const char promotion : {'q', 'r', 'b', 'n'}) {
        steps.push_back({from, to, promotion});
    }
}

void NaiveBoard::addPushes(std::vector<Step>& steps, int from) const {
    const int forward = whiteToMove ? 8 : -8;
    const int homeRow = whiteToMove ? 1 : 6;
    if (!isFree(from + forward)) {
        return;
    }
    addPawnSteps(steps, from, from + forward);
    if (rowOf(from) == homeRow && isFree(from + 2 * forward)) {
        steps.push_back({from, from + 2 * forward, 0});
    }
}

void NaiveBoard::addCastlings(std::vector<Step>& steps) const {
    const int king = squareAt(4, whiteToMove ? 0 : 7);
    for (const char right : castling) {
        if (isWhitePiece(right) != whiteToMove) {
            continue;
        }
        const bool kingSide = kindOf(right) == 'k';
        const int direction = kingSide ? 1 : -1;
        const int rook = kingSide ? king + 3 : king - 4;
        if (isPathFree(king, rook) && !isAttackedByEnemy(king) &&
            !isAttackedByEnemy(king + direction)) {
            steps.push_back({king, king + 2 * direction, 0});
        }
    }
}

std::vector<NaiveBoard::Step> NaiveBoard::getSteps() const {
    std::vector<Step> steps;
    for (int from = 0; from < 64; ++from) {
        if (!isOwn(from)) {
            continue;
        }
        const bool isPawn = kindOf(squares[index(from)]) == 'p';
        if (isPawn) {
            addPushes(steps, from);
        }
        for (int to = 0; to < 64; ++to) {
            if (isOwn(to) || !attacks(from, to)) {
                continue;
            }
            if (!isPawn) {
                steps.push_back({from, to, 0});
            } else if (isEnemy(to) || to == enPassant) {
                addPawnSteps(steps, from, to);
            }
        }
    }
    addCastlings(steps);
    return steps;
}

bool NaiveBoard::isLegal(const Step& step) const {
    NaiveBoard after = *this;
    after.make(step);
    after.whiteToMove = whiteToMove;
    return !after.isInCheck();
}

void NaiveBoard::loseCastling(int square) {
    const std::string name = nameOf(square);
    const auto lose = [&](const std::string& home, const std::string& rights) {
        if (name == home) {
            std::erase_if(castling, [&](char right) { return rights.find(right) != rights.npos; });
        }
    };
    lose("a1", "Q");
    lose("e1", "KQ");
    lose("h1", "K");
    lose("a8", "q");
    lose("e8", "kq");
    lose("h8", "k");
}

void NaiveBoard::make(const Step& step) {
    const auto [from, to, promotion] = step;
    const char piece = squares[index(from)];
    const bool isPawn = kindOf(piece) == 'p';
    halfMoveClock = isPawn || !isFree(to) ? 0 : halfMoveClock + 1;

    if (isPawn && to == enPassant) {
        squares[index(squareAt(fileOf(to), rowOf(from)))] = '.';
    }
    squares[index(to)] = piece;
    squares[index(from)] = '.';
    if (promotion != 0) {
        squares[index(to)] = whiteToMove ? static_cast<char>(std::toupper(promotion)) : promotion;
    }
    if (kindOf(piece) == 'k' && std::abs(to - from) == 2) {
        const int rookFrom = to > from ? from + 3 : from - 4;
        std::swap(squares[index(rookFrom)], squares[index((from + to) / 2)]);
    }
    loseCastling(from);
    loseCastling(to);
    enPassant = isPawn && std::abs(to - from) == 16 ? (from + to) / 2 : NO_SQUARE;
    whiteToMove = !whiteToMove;
}

std::string NaiveBoard::toText(const Step& step) {
    std::string text = nameOf(step.from) + nameOf(step.to);
    if (step.promotion != 0) {
        text += step.promotion;
    }
    return text;
}

std::vector<std::string> NaiveBoard::getLegalMoves() const {
    std::vector<std::string> moves;
    for (const Step& step : getSteps()) {
        if (isLegal(step)) {
            moves.push_back(toText(step));
        }
    }
    std::ranges::sort(moves);
    return moves;
}

bool NaiveBoard::play(const std::string& move) {
    for (const Step& step : getSteps()) {
        if (toText(step) == move && isLegal(step)) {
            make(step);
            return true;
        }
    }
    return false;
}

// A pawn that can take en passant attacks the passed square.
bool NaiveBoard::isEnPassantUsable() const {
    if (enPassant == NO_SQUARE) {
        return false;
    }
    for (int from = 0; from < 64; ++from) {
        if (isOwn(from) && kindOf(squares[index(from)]) == 'p' && attacks(from, enPassant)) {
            return true;
        }
    }
    return false;
}

std::string NaiveBoard::getIdentity() const {
    std::string text;
    for (int row = 7; row >= 0; --row) {
        int empty = 0;
        for (int file = 0; file <= 8; ++file) {
            const bool isPiece = file < 8 && !isFree(squareAt(file, row));
            if (empty > 0 && (isPiece || file == 8)) {
                text += std::to_string(empty);
                empty = 0;
            }
            if (isPiece) {
                text += squares[index(squareAt(file, row))];
            } else {
                ++empty;
            }
        }
        text += row > 0 ? "/" : "";
    }
    text += whiteToMove ? " w " : " b ";
    text += castling.empty() ? "-" : castling;
    return text + " " + (isEnPassantUsable() ? nameOf(enPassant) : "-");
}
