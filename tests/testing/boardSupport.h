// What the tests of positions and moves share.
#pragma once

#include "base/cppIoUtils.h"
#include "board/makeMove.h"
#include "board/moveGenerator.h"
#include "board/position.h"
#include "notation/fen.h"
#include "notation/longAlgebraicMove.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

inline constexpr const char* START_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

inline Position positionOf(const std::string& fen) {
    Position position;
    setFenNotation(position, fen);
    return position;
}

// What arrays hold before moves are written there, so that a member left out shows.
inline constexpr Move LEFT_OVER = {E2, E4, PAWN, QUEEN, EN_PASSANT, KNIGHT};

// Pseudo-legal moves in the order of generation.
inline std::vector<Move> pseudoLegalMovesOf(const Position& position) {
    MoveArray moves;
    moves.fill(LEFT_OVER);
    return {moves.begin(), moves.begin() + generateMoves(position, moves)};
}

inline std::vector<Move> legalMovesOf(const Position& position) {
    MoveArray moves;
    moves.fill(LEFT_OVER);
    return {moves.begin(), moves.begin() + generateLegalMoves(position, moves)};
}

inline std::vector<std::string> textsOf(const std::vector<Move>& moves) {
    std::vector<std::string> texts;
    texts.reserve(moves.size());
    for (const Move& move : moves) {
        texts.push_back(LongAlgebraicMove(move).toString());
    }
    return texts;
}

// The legal move of a text. Throws if there is none.
inline Move moveOf(const Position& position, const std::string& text) {
    MoveArray moves;
    const int count = generateLegalMoves(position, moves);
    const int index = LongAlgebraicMove(text).getIndexOfMove(moves.first(count));
    if (index < 0) {
        throw std::invalid_argument(text + " is not legal in " + getFen(position));
    }
    return moves[index];
}

// Plays it.
inline void play(Position& position, const std::string& text) {
    position = positionAfter(position, moveOf(position, text));
}

// The position after moves from the start position, separated by blanks.
inline Position positionAfterMoves(const std::string& moves) {
    Position position = positionOf(START_FEN);
    for (const std::string& text : splitString(moves)) {
        play(position, text);
    }
    return position;
}

// The difference of two positions, or an empty text. Left-overs of empty fields and of
// free list entries do not count, nor does a check cache that only one of them has.
inline std::string findDifference(const Position& a, const Position& b) {
    for (int i = 0; i < BOARD_SIZE; ++i) {
        const auto [color, type, listIndex] = a.board[static_cast<FieldIndex>(i)];
        const Field& other = b.board[static_cast<FieldIndex>(i)];
        if (color != other.color ||
            (color <= BLACK && (type != other.pieceType || listIndex != other.pieceIndexInList))) {
            return "field " + std::to_string(i);
        }
    }
    for (int i = 0; i < LIST_ENTRIES; ++i) {
        const auto [type, field] = a.pieces[i];
        if (type != b.pieces[i].pieceType ||
            (type != NO_PIECE && field != b.pieces[i].boardPosition)) {
            return "list entry " + std::to_string(i);
        }
    }
    if (a.check != b.check && a.check != CHECK_UNKNOWN && b.check != CHECK_UNKNOWN) {
        return "check cache";
    }
    const auto incremental = [](const Position& p) {
        const IncrementalState& c = p.incremental;
        return std::tie(p.colorToMove, c.epField, c.castles.elements, c.material.elements,
                        c.moveEvaluation, c.halfMoveClock, c.hash);
    };
    return incremental(a) == incremental(b) ? "" : "incremental value";
}

// Positions and the numbers of their move sequences by depth, from depth 1 on.
struct PerftLine {
    std::string fen;
    std::vector<long> counts;
};

inline std::vector<PerftLine> readPerftLines() {
    std::ifstream file(KESTRAN_TEST_DATA "/perft.epd");
    std::vector<PerftLine> lines;
    for (std::string text; std::getline(file, text);) {
        std::istringstream stream(text);
        PerftLine line;
        std::getline(stream, line.fen, ';');
        line.fen.erase(line.fen.find_last_not_of(' ') + 1);
        std::string depth;
        for (long count = 0; stream >> depth >> count; stream.ignore(2, ';')) {
            line.counts.push_back(count);
        }
        lines.push_back(line);
    }
    if (lines.empty()) {
        throw std::runtime_error("no positions in perft.epd");
    }
    return lines;
}
