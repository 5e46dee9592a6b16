#include "support/plainRules.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <sstream>
#include <string_view>
#include <utility>

namespace plain {
namespace {

constexpr std::string_view LETTERS = ".PRNBQK.prnbqk"; // by type, White's and then Black's
// By right to castle, as ROOK_FROM.
constexpr std::array<int, 4> KING_FROM = {25, 25, 95, 95};
constexpr std::string_view RIGHTS = "QKqk";

// The steps in which a piece attacks; all but pawn, knight and king repeat them.
const std::vector<int>& stepsOf(int type, int colour) {
    static const std::array<std::vector<int>, 7> steps = {{{-11, -9}, // of Black's pawn
                                                           {9, 11},
                                                           {1, 10, -1, -10},
                                                           {19, 21, 8, 12, -8, -12, -19, -21},
                                                           {9, 11, -9, -11},
                                                           {-1, 1, -10, 10, -11, 11, -9, 9},
                                                           {-1, 1, -10, 10, -11, 11, -9, 9}}};
    return steps[type == PAWN && colour == BLACK ? 0 : at(type)];
}

bool isSlider(int type) {
    return type == ROOK || type == BISHOP || type == QUEEN;
}

std::string textOf(int field) {
    return {"abcdefgh"[fileOf(field)], "12345678"[rowOf(field)]};
}

} // namespace

std::string Move::text() const {
    const std::string text = textOf(from) + textOf(to);
    return promotion == NONE ? text : text + " prnbq"[promotion];
}

Position::Position(const std::string& fen) {
    std::array<std::string, 4> fields;
    auto& [squares, color, rights, behindPassed] = fields;
    std::istringstream(fen) >> squares >> color >> rights >> behindPassed >> clock;
    std::array<char, 120> letters = {};
    board.fill(-2);
    int field = 91;
    for (const char c : squares) {
        const int count = std::isdigit(static_cast<unsigned char>(c)) != 0 ? c - '0' : 1;
        for (int i = 0; c != '/' && i < count; ++i) {
            letters[at(field)] = c;
            board[at(field++)] = -1;
        }
        field -= c == '/' ? 18 : 0;
    }
    for (const int colour : {WHITE, BLACK}) {
        int entry = 16 * colour;
        for (const int type : {KING, PAWN, ROOK, KNIGHT, BISHOP, QUEEN}) {
            for (int i = 21; i <= 98; ++i) {
                if (letters[at(i)] == LETTERS[at(7 * colour + type)]) {
                    board[at(i)] = entry;
                    pieces[at(entry++)] = {type, i};
                }
            }
        }
    }
    side = color == "w" ? WHITE : BLACK;
    for (int right = 0; right < 4; ++right) {
        castles[at(right)] = rights.find(RIGHTS[at(right)]) != std::string::npos;
    }
    passed = behindPassed == "-" ? 0 : 51 + behindPassed[0] - 'a' + (side == WHITE ? 10 : 0);
}

int Position::colourAt(int field) const {
    const int index = board[at(field)];
    return index == -2 ? OUTSIDE : index == -1 ? EMPTY : index / 16;
}

// Attacks are symmetric: a rook attacks the field exactly if a rook there would attack it.
bool Position::isAttacked(int field, int attacker) const {
    for (int type = PAWN; type <= KING; ++type) {
        for (const int step : stepsOf(type, 1 - attacker)) {
            int from = field + step;
            while (isSlider(type) && colourAt(from) == EMPTY) {
                from += step;
            }
            if (colourAt(from) == attacker && typeAt(from) == type) {
                return true;
            }
        }
    }
    return false;
}

void Position::addMove(std::vector<Move>& moves, const Piece& piece, int to) const {
    const int captured = colourAt(to) == EMPTY ? int{NONE} : typeAt(to);
    if (piece.type != PAWN || (rowOf(to) != 0 && rowOf(to) != 7)) {
        moves.push_back({piece.field, to, piece.type, captured});
        return;
    }
    for (const int promotion : {KNIGHT, BISHOP, ROOK, QUEEN}) {
        moves.push_back({piece.field, to, PAWN, captured, 0, promotion});
    }
}

void Position::addMoves(std::vector<Move>& moves, const Piece& piece) const {
    const bool isPawn = piece.type == PAWN;
    const int ahead = side == WHITE ? 10 : -10;
    const bool isHome = rowOf(piece.field) == (side == WHITE ? 1 : 6);
    for (int to = piece.field + ahead, count = isHome ? 2 : 1;
         isPawn && count > 0 && colourAt(to) == EMPTY; to += ahead, --count) {
        addMove(moves, piece, to);
    }
    for (const int step : stepsOf(piece.type, side)) {
        int to = piece.field + step;
        for (; isSlider(piece.type) && colourAt(to) == EMPTY; to += step) {
            addMove(moves, piece, to);
        }
        if (colourAt(to) == 1 - side || (colourAt(to) == EMPTY && !isPawn)) {
            addMove(moves, piece, to);
        }
    }
    if (isPawn && passed != 0 && std::abs(passed - piece.field) == 1) {
        moves.push_back({piece.field, passed + ahead, PAWN, PAWN, 5});
    }
}

void Position::addCastlings(std::vector<Move>& moves) const {
    const auto isOpen = [&](int field) {
        return colourAt(field) == EMPTY && !isAttacked(field, 1 - side);
    };
    for (int right = 2 * side; right < 2 * side + 2; ++right) {
        const int from = KING_FROM[at(right)];
        const int step = ROOK_FROM[at(right)] > from ? 1 : -1;
        if (castles[at(right)] && !isInCheck() && isOpen(from + step) && isOpen(from + 2 * step) &&
            (step > 0 || colourAt(from - 3) == EMPTY)) {
            moves.push_back({from, from + 2 * step, KING, NONE, right + 1});
        }
    }
}

std::vector<Move> Position::moves() const {
    std::vector<Move> moves;
    for (int i = 16 * side; i < 16 * side + 16; ++i) {
        const int type = pieces[at(i)].type;
        if (type != NONE) {
            addMoves(moves, pieces[at(i)]);
        }
        if (type == KING) {
            addCastlings(moves);
        }
    }
    return moves;
}

std::optional<Position> Position::play(const Move& move) const {
    Position after = *this;
    if (move.captured != NONE) {
        int& taken = after.board[at(move.flag == 5 ? passed : move.to)];
        after.pieces[at(taken)].type = NONE;
        taken = -1;
    }
    const auto shift = [&after](int from, int to) {
        after.pieces[at(after.board[at(from)])].field = to;
        std::swap(after.board[at(from)], after.board[at(to)]);
    };
    shift(move.from, move.to);
    if (move.isCastle()) {
        shift(ROOK_FROM[at(move.flag - 1)], (move.from + move.to) / 2);
    }
    if (after.isInCheck()) {
        return std::nullopt;
    }
    if (move.promotion != NONE) {
        after.pieces[at(after.board[at(move.to)])].type = move.promotion;
    }
    const auto isAsBefore = [&](int field) { return after.board[at(field)] == board[at(field)]; };
    for (int right = 0; right < 4; ++right) {
        after.castles[at(right)] = castles[at(right)] && isAsBefore(KING_FROM[at(right)]) &&
                                   isAsBefore(ROOK_FROM[at(right)]);
    }
    after.passed = move.piece == PAWN && std::abs(move.to - move.from) == 20 ? move.to : 0;
    after.clock = move.piece == PAWN || move.captured != NONE ? 0 : clock + 1;
    after.side = 1 - side;
    return after;
}

std::vector<std::string> Position::legalMoves() const {
    std::vector<std::string> texts;
    for (const Move& move : moves()) {
        if (play(move)) {
            texts.push_back(move.text());
        }
    }
    std::ranges::sort(texts);
    return texts;
}

bool Position::play(const std::string& text) {
    for (const Move& move : moves()) {
        if (const auto after = move.text() == text ? play(move) : std::nullopt) {
            *this = *after;
            return true;
        }
    }
    return false;
}

bool Position::canTakePassed() const {
    return passed != 0 && std::ranges::any_of(std::array{passed - 1, passed + 1}, [&](int field) {
               return colourAt(field) == side && typeAt(field) == PAWN;
           });
}

bool Position::canAnyoneMate() const {
    const auto count = [&](int type) { return std::ranges::count(pieces, type, &Piece::type); };
    return count(PAWN) + count(ROOK) + count(QUEEN) > 0 || count(KNIGHT) + count(BISHOP) > 1;
}

std::string Position::identity() const {
    std::string text;
    int empty = 0;
    for (int field = 91; field > 20; field += field % 10 == 8 ? -17 : 1) {
        const int colour = colourAt(field);
        empty += colour == EMPTY ? 1 : 0;
        if (empty > 0 && (colour != EMPTY || field % 10 == 8)) {
            text += std::to_string(std::exchange(empty, 0));
        }
        if (colour != EMPTY) {
            text += LETTERS[at(7 * colour + typeAt(field))];
        }
        text += field % 10 == 8 && field > 28 ? "/" : "";
    }
    text += side == WHITE ? " w " : " b ";
    for (const int right : {1, 0, 3, 2}) {
        text += castles[at(right)] ? RIGHTS.substr(at(right), 1) : "";
    }
    text += text.back() == ' ' ? "- " : " ";
    return text + (canTakePassed() ? textOf(passed + (side == WHITE ? 10 : -10)) : "-");
}

} // namespace plain
