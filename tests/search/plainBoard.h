// Positions and moves once more, as plainly as can be: a move gives a new position, and
// whatever is asked of a position is worked out from nothing. Of the engine it uses only
// numbers: fields run from 21 for a1 in rows of ten to 98 for h8, and the tables of the
// key and of the evaluation.
#pragma once

#include "board/pieceSquareTables.h"
#include "board/zobristNumbers.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace plain {

enum Colour { WHITE, BLACK, EMPTY, OUTSIDE };
enum Type { NONE, PAWN, ROOK, KNIGHT, BISHOP, QUEEN, KING };

// Worth of a piece by its type.
inline constexpr std::array<int, 7> VALUES = {0, 1000, 5000, 3000, 3100, 9500, 0};
// By right to castle: White long, White short, Black long, Black short.
inline constexpr std::array<int, 4> KING_FROM = {25, 25, 95, 95};
inline constexpr std::array<int, 4> KING_TO = {23, 27, 93, 97};
inline constexpr std::array<int, 4> ROOK_FROM = {21, 28, 91, 98};
inline constexpr std::array<int, 4> ROOK_TO = {24, 26, 94, 96};

constexpr std::size_t at(int index) {
    return static_cast<std::size_t>(index);
}
constexpr int fileOf(int field) {
    return field % 10 - 1;
}
constexpr int rowOf(int field) {
    return field / 10 - 2;
}

struct Move {
    int from; // of the king, if it castles
    int to;
    int piece;
    int captured = NONE;
    int flag = 0; // 1 to 4 for castling with the right 0 to 3, 5 for en passant
    int promotion = NONE;

    bool isCastle() const { return 1 <= flag && flag <= 4; }

    // As UCI writes it.
    std::string text() const {
        std::string text;
        for (const int field : {from, to}) {
            text += "abcdefgh"[fileOf(field)];
            text += "12345678"[rowOf(field)];
        }
        return promotion == NONE ? text : text + " prnbq"[promotion];
    }

    // The code of 16 bits, in which castling is the king's move onto its rook.
    int code() const {
        constexpr std::array<int, 6> promotions = {0, 0, 3, 1, 2, 4};
        const int target = isCastle() ? ROOK_FROM[at(flag - 1)] : to;
        return fileOf(target) + 8 * rowOf(target) + 64 * fileOf(from) + 512 * rowOf(from) +
               4096 * promotions[at(promotion)];
    }
};

struct Piece {
    int type = NONE; // NONE if it is taken, or was never there
    int field = 0;
};

struct Position {
    std::array<Piece, 32> pieces;     // 16 White's, 16 Black's, in the order of their moves
    std::array<int, 120> board;       // by field: index into `pieces`, -1, or -2 for outside
    int side = WHITE;                 // to move
    int passed = 0;                   // field of the pawn that has just made a double step
    std::array<bool, 4> castles = {}; // rights
    int clock = 0;                    // half moves since a pawn moved or a piece was taken

    // From FEN of five fields, which must be sound.
    explicit Position(const std::string& fen) {
        std::istringstream words(fen);
        std::string squares;
        std::string color;
        std::string rights;
        std::string behindPassed;
        words >> squares >> color >> rights >> behindPassed >> clock;
        std::array<char, 120> letters = {};
        board.fill(-2);
        int field = 91;
        for (const char c : squares) {
            const int count = std::isdigit(c) != 0 ? c - '0' : 1;
            for (int i = 0; c != '/' && i < count; ++i) {
                letters[at(field)] = c;
                board[at(field++)] = -1;
            }
            field -= c == '/' ? 18 : 0;
        }
        for (const int type : {KING, PAWN, ROOK, KNIGHT, BISHOP, QUEEN}) {
            for (int i = 21; i <= 98; ++i) {
                const bool isWhite = letters[at(i)] == " PRNBQK"[type];
                if (isWhite || letters[at(i)] == " prnbqk"[type]) {
                    auto* entry = pieces.begin() + (isWhite ? 0 : 16);
                    entry = std::find_if(entry, pieces.end(), [](Piece p) { return !p.type; });
                    *entry = {type, i};
                    board[at(i)] = static_cast<int>(entry - pieces.begin());
                }
            }
        }
        side = color == "w" ? WHITE : BLACK;
        for (int right = 0; right < 4; ++right) {
            castles[at(right)] = rights.find("QKqk"[right]) != std::string::npos;
        }
        passed = behindPassed == "-" ? 0 : 51 + behindPassed[0] - 'a' + (side == WHITE ? 10 : 0);
    }

    int colourAt(int field) const {
        const int index = board[at(field)];
        return index == -2 ? OUTSIDE : index == -1 ? EMPTY : index / 16;
    }

    // Whether a piece on the board attacks a field that it does not stand on.
    bool reaches(const Piece& piece, int colour, int target) const {
        const int files = fileOf(target) - fileOf(piece.field);
        const int rows = rowOf(target) - rowOf(piece.field);
        const int less = std::min(std::abs(files), std::abs(rows));
        const int more = std::max(std::abs(files), std::abs(rows));
        const bool isSlide = (less == 0 && (piece.type == ROOK || piece.type == QUEEN)) ||
                             (less == more && (piece.type == BISHOP || piece.type == QUEEN));
        if (!isSlide) {
            return (piece.type == PAWN && less == 1 && more == 1 &&
                    rows == (colour == WHITE ? 1 : -1)) ||
                   (piece.type == KNIGHT && less == 1 && more == 2) ||
                   (piece.type == KING && more == 1);
        }
        const int step = (target - piece.field) / more;
        int field = piece.field + step;
        while (field != target && colourAt(field) == EMPTY) {
            field += step;
        }
        return field == target;
    }

    bool isAttacked(int field, int attacker) const {
        const auto* const first = pieces.begin() + 16 * attacker;
        return std::any_of(first, first + 16, [&](const Piece& piece) {
            return piece.type != NONE && reaches(piece, attacker, field);
        });
    }

    // Whether the side to move is in check.
    bool isInCheck() const { return isAttacked(pieces[at(16 * side)].field, 1 - side); }

    // ---- Moves ----

    void addMove(std::vector<Move>& moves, const Piece& piece, int to) const {
        const int captured = board[at(to)] < 0 ? 0 : pieces[at(board[at(to)])].type;
        if (piece.type == PAWN && (rowOf(to) == 0 || rowOf(to) == 7)) {
            for (const int promotion : {KNIGHT, BISHOP, ROOK, QUEEN}) {
                moves.push_back({piece.field, to, PAWN, captured, 0, promotion});
            }
        } else {
            moves.push_back({piece.field, to, piece.type, captured});
        }
    }

    void addPieceMoves(std::vector<Move>& moves, const Piece& piece,
                       const std::vector<int>& steps) const {
        const bool isSlider = piece.type != KING && piece.type != KNIGHT;
        for (const int step : steps) {
            int to = piece.field + step;
            for (; isSlider && colourAt(to) == EMPTY; to += step) {
                addMove(moves, piece, to);
            }
            if (colourAt(to) == 1 - side || colourAt(to) == EMPTY) {
                addMove(moves, piece, to);
            }
        }
    }

    void addPawnMoves(std::vector<Move>& moves, const Piece& piece) const {
        const int ahead = side == WHITE ? 10 : -10;
        const int to = piece.field + ahead;
        if (colourAt(to) == EMPTY) {
            addMove(moves, piece, to);
            if (rowOf(piece.field) == (side == WHITE ? 1 : 6) && colourAt(to + ahead) == EMPTY) {
                addMove(moves, piece, to + ahead);
            }
        }
        for (const int beside : {to - 1, to + 1}) {
            if (colourAt(beside) == 1 - side) {
                addMove(moves, piece, beside);
            }
        }
        if (passed != 0 && std::abs(passed - piece.field) == 1) {
            moves.push_back({piece.field, passed + ahead, PAWN, PAWN, 5});
        }
    }

    void addCastlings(std::vector<Move>& moves) const {
        for (int right = 2 * side; right < 2 * side + 2; ++right) {
            const int from = KING_FROM[at(right)];
            const int to = KING_TO[at(right)];
            const int between = ROOK_TO[at(right)];
            const auto isOpen = [&](int field) {
                return colourAt(field) == EMPTY && !isAttacked(field, 1 - side);
            };
            if (castles[at(right)] && pieces[at(16 * side)].field == from && !isInCheck() &&
                isOpen(between) && isOpen(to) && (to > from || colourAt(from - 3) == EMPTY)) {
                moves.push_back({from, to, KING, NONE, right + 1});
            }
        }
    }

    // The moves of the side to move, in the order of the engine. Some of them may leave its
    // king attacked.
    std::vector<Move> moves() const {
        static const std::array<std::vector<int>, 7> steps = {{{},
                                                               {},
                                                               {1, 10, -1, -10},
                                                               {19, 21, 8, 12, -8, -12, -19, -21},
                                                               {9, 11, -9, -11},
                                                               {-1, 1, -10, 10, -11, 11, -9, 9},
                                                               {-1, 1, -10, 10, -11, 11, -9, 9}}};
        std::vector<Move> moves;
        for (int i = 16 * side; i < 16 * side + 16; ++i) {
            const Piece& piece = pieces[at(i)];
            addPieceMoves(moves, piece, steps[at(piece.type)]);
            if (piece.type == PAWN) {
                addPawnMoves(moves, piece);
            } else if (piece.type == KING) {
                addCastlings(moves);
            }
        }
        return moves;
    }

    // The position behind a move, unless it leaves the mover's king attacked.
    std::optional<Position> play(const Move& move) const {
        Position after = *this;
        if (move.captured != NONE) {
            const int field = move.flag == 5 ? passed : move.to;
            after.pieces[at(board[at(field)])].type = NONE;
            after.board[at(field)] = -1;
        }
        const auto shift = [&after](int from, int to) {
            after.pieces[at(after.board[at(from)])].field = to;
            std::swap(after.board[at(from)], after.board[at(to)]);
        };
        shift(move.from, move.to);
        if (move.isCastle()) {
            shift(ROOK_FROM[at(move.flag - 1)], ROOK_TO[at(move.flag - 1)]);
        }
        if (after.isInCheck()) {
            return std::nullopt;
        }
        if (move.promotion != NONE) {
            after.pieces[at(after.board[at(move.to)])].type = move.promotion;
        }
        for (int right = 0; right < 4; ++right) {
            for (const int field : {move.from, move.to}) {
                if (field == KING_FROM[at(right)] || field == ROOK_FROM[at(right)]) {
                    after.castles[at(right)] = false;
                }
            }
        }
        after.passed = move.piece == PAWN && std::abs(move.to - move.from) == 20 ? move.to : 0;
        after.clock = move.piece == PAWN || move.captured != NONE ? 0 : clock + 1;
        after.side = 1 - side;
        return after;
    }

    // ---- Key and static score ----

    std::uint64_t key() const {
        constexpr std::array<int, 7> kinds = {0, 0, 6, 2, 4, 8, 10};
        constexpr std::array<int, 4> rights = {769, 768, 771, 770};
        std::uint64_t key = side == WHITE ? ZobristRandomArray[780] : 0;
        for (int i = 0; i < 32; ++i) {
            const auto [type, field] = pieces[at(i)];
            const int kind = kinds[at(type)] + (i < 16 ? 1 : 0);
            const int number = (kind * 8 + rowOf(field)) * 8 + fileOf(field);
            key ^= type != NONE ? ZobristRandomArray[at(number)] : 0;
        }
        for (int i = 0; i < 4; ++i) {
            key ^= castles[at(i)] ? ZobristRandomArray[at(rights[at(i)])] : 0;
        }
        const auto isCapturer = [this](int field) {
            return colourAt(field) == side && pieces[at(board[at(field)])].type == PAWN;
        };
        if (passed != 0 && (isCapturer(passed - 1) || isCapturer(passed + 1))) {
            key ^= ZobristRandomArray[at(772 + fileOf(passed))];
        }
        return key;
    }

    // The static score is the sum of these two, for the side that is not to move.
    int material() const {
        int sum = 0;
        for (int i = 0; i < 32; ++i) {
            sum += VALUES[at(pieces[at(i)].type)] * (i / 16 == side ? -1 : 1);
        }
        return sum;
    }

    int positional() const {
        int all = 0;
        for (const Piece& piece : pieces) {
            all += VALUES[at(piece.type)];
        }
        int sum = bonus(WHITE) - bonus(BLACK);
        for (int i = 0; i < 32; ++i) {
            const auto colour = static_cast<::Color>(i / 16);
            const auto field = static_cast<::FieldIndex>(pieces[at(i)].field);
            const int type = pieces[at(i)].type;
            if (type == PAWN) {
                sum += pawnsOpeningMiddleGame[colour][field];
            } else if (type == KNIGHT) {
                sum += knightsPositionTable[colour][field];
            } else if (type == BISHOP) {
                sum += bishopPosition[colour][field];
            } else if (type == KING && all <= 26200) {
                sum += kingEndGame[colour][field];
            } else if (type == KING) {
                sum += kingOpening[field] * (i < 16 ? 1 : -1);
            }
        }
        return side == WHITE ? -sum : sum;
    }

    int bonus(int colour) const {
        const auto isFar = [=](int field) { return colour == WHITE ? field > 80 : field < 39; };
        int bishops = 0;
        int farRooks = 0;
        for (int i = 16 * colour; i < 16 * colour + 16; ++i) {
            bishops += pieces[at(i)].type == BISHOP ? 1 : 0;
            farRooks += pieces[at(i)].type == ROOK && isFar(pieces[at(i)].field) ? 1 : 0;
        }
        const bool isShutIn = farRooks > 0 && isFar(pieces[at(16 - 16 * colour)].field);
        return (bishops > 1 ? 10 : 0) + (!isShutIn ? 0 : farRooks > 1 ? 35 : 10);
    }
};

} // namespace plain
