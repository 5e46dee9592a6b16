// Makes positions by a seed, and games from them.
#pragma once

#include "search/plainGame.h"
#include "search/searchComparison.h"
#include "testing/dice.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

// Games of all kinds, up to odd ones: each seed makes one, with settings of a search.
class CaseMaker : private Dice {
public:
    static constexpr const char* START_FEN =
        "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0";

    using Dice::Dice;

    SearchCase make() {
        SearchCase example;
        do {
            example.fen = PlayingSearch::accept(makeFen());
        } while (example.fen.empty());
        example.moves = playOn(example.fen);
        example.settings = {pick({0, 1, 7, 64, 1000, 1000, 20011}), chance(90), chance(80),
                            pick({0, 1, 2, 3, 4, 60, below(16)}),
                            pick({2000, 2000, 2000, 0, 500, -700, 100000})};
        example.isTwice = chance(40);
        example.lines = pick({1, 1, 2, 4});
        example.maxNodes = chance(6) ? 100000 : 1000;
        return example;
    }

private:
    // Puts a piece on an empty square of rows `lowest` to `highest`, if chance finds one.
    void drop(char letter, int lowest = 0, int highest = 7) {
        const bool isPawn = letter == 'P' || letter == 'p';
        const int row = lowest + below(highest - lowest + 1);
        const std::size_t square = at(row * 8 + below(8));
        if (squares[square] == 0 && (!isPawn || (row > 0 && row < 7))) {
            squares[square] = letter;
        }
    }
    void dropSome(const std::string& letters, int most) {
        for (int i = below(most + 1); i > 0; --i) {
            drop(pickFrom(letters));
        }
    }

    std::string makeFen() {
        if (chance(20)) {
            return START_FEN;
        }
        squares.fill(0);
        const bool isWhite = chance(50); // to move
        std::string behind = "-";
        switch (below(7)) {
        case 0:
            putCastles();
            break;
        case 1:
            behind = putPassedPawn(isWhite);
            break;
        case 2: // one step from promotion
            for (int i = 0; i < 6; ++i) {
                drop('P', 6, 6);
                drop('p', 1, 1);
            }
            dropSome("NnBbRr", 4);
            break;
        case 3:
            putOddMaterial();
            break;
        case 4: // few pieces
            dropSome("QRBNqrbnPp", 4);
            break;
        case 5: // pawns that block each other
            for (int file = 0; file < 8; file += pick({1, 1, 2})) {
                squares[at(24 + file)] = 'P';
                squares[at(32 + file)] = 'p';
            }
            drop('K', 0, 2);
            drop('k', 5, 7);
            dropSome("Bb", 1);
            break;
        default:
            dropSome("PPPPPPPPNNBBRRQ", 14);
            dropSome("ppppppppnnbbrrq", 14);
        }
        for (const char king : {'K', 'k'}) {
            while (std::ranges::find(squares, king) == squares.end()) {
                drop(king);
            }
        }
        return boardText() + (isWhite ? " w" : " b") + " KQkq " + behind + ' ' +
               std::to_string(pick({0, below(100), 92 + below(9)}));
    }

    void putCastles() {
        squares[4] = 'K';
        squares[60] = 'k';
        for (const int corner : {0, 7, 56, 63}) {
            const char rook = corner < 8 ? 'R' : 'r';
            squares[at(corner)] = chance(80) ? rook : '\0';
        }
        dropSome("PPPpppNBnbq", 14);
    }

    // A double step that can be answered en passant, between lines that may come open.
    // Returns the square that the pawn passed over.
    std::string putPassedPawn(bool isWhiteToMove) {
        const int file = 1 + below(6);
        const int square = (isWhiteToMove ? 32 : 24) + file;
        squares[at(square)] = isWhiteToMove ? 'p' : 'P';
        squares[at(square + pick({-1, 1}))] = isWhiteToMove ? 'P' : 'p';
        drop('K', 3, 4);
        drop('k', 3, 4);
        dropSome("RrBbQqPp", 8);
        return "abcdefgh"[file] + std::string(isWhiteToMove ? "6" : "3");
    }

    // Up to fifteen queens, or nine rooks, and the like.
    void putOddMaterial() {
        const std::string own = pick({"Q", "R", "RB", "N", "QRBN", "B"});
        const std::string other = pick({"q", "r", "rb", "n", "qrbn", "p"});
        for (int i = pick({0, below(16), below(16)}); i > 0; --i) {
            drop(pickFrom(own));
            dropSome(other, pick({0, 2}));
        }
    }

    std::string boardText() const {
        std::string text;
        for (int row = 7; row >= 0; --row) {
            for (int file = 0; file < 8; ++file) {
                const char letter = squares[at(row * 8 + file)];
                text += letter == 0 ? '1' : letter;
            }
            text += row > 0 ? "/" : "";
        }
        return text;
    }

    std::vector<std::string> playOn(const std::string& fen) {
        PlainGame game(fen);
        const int toAndFro = pick({0, 30, 80});
        const int most = fen == START_FEN ? 150 : 40;
        for (int plies = pick({0, 1, below(10), below(most)}); plies > 0; --plies) {
            if (!game.playAny(*this, toAndFro)) {
                break;
            }
        }
        return game.getMoves();
    }

    std::array<char, 64> squares{}; // letters of FEN from a1 on, 0 for an empty square
};
