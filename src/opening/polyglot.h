// The compact form of a move and the opening book that is made of it.
#pragma once

#include "board/boardRepresentation.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

// A move in the 16-bit code of the Polyglot book format, with the format's weight
// and learn value. The code holds, from bit 0: file and row of the target, file and
// row of the start, three bits each, then the promotion (1 knight, 2 bishop, 3 rook,
// 4 queen). Castling is written as the king taking its own rook.
class PolyglotEntry {
public:
    PolyglotEntry(const Move& move, int _weight, int _learn);
    PolyglotEntry(std::int16_t _moveInt, int _weight, int _learn);

    // The code of a move.
    static std::int16_t getIntRepresentation(const Move& move);
    // Adds start and target, two fields of the board, to a code that holds neither.
    static void fillMove(int from, int to, std::int16_t& result);

    std::int16_t getMoveInt() const { return moveInt; }
    int getWeight() const { return weight; }
    int getLearn() const { return learn; }
    FieldIndex getFrom() const;
    FieldIndex getTo() const;
    // The piece that a pawn becomes, 0 for none and for codes without a meaning.
    PieceType getPromotionPiece() const;

    // Whether the code names this move.
    bool isMove(const Move& move) const;
    // Index of the first of `count` moves that the code names, or -1.
    int getMove(const Move* moves, int count) const;

private:
    std::int16_t moveInt; // the code; its sign bit stays 0
    int weight;           // always 0 here
    std::int32_t learn;   // always 0 here
};

// Book moves by position key. A move that several lines share stands several times,
// and so is drawn more often.
class PolyglotBook {
public:
    // `from` of the answer for no book move; its other fields mean nothing.
    static constexpr FieldIndex NO_BOOK_MOVE = 127;

    // An empty book. The first one of the process seeds the random generator.
    PolyglotBook();

    // The book that the engine plays from.
    static PolyglotBook getStandard();
    // The lines of a text file, one a line; empty, with a message on standard error,
    // if it cannot be opened.
    static PolyglotBook getBookFromFile(const std::string& filePath, bool polyglotNotation);
    // The file of an earlier private book.
    static PolyglotBook getPcst();

    // Seeds the random generator with the time in seconds.
    static void resetRand();

    // Appends an entry to those of a key.
    void put(std::uint64_t hash, const PolyglotEntry& entry);
    // The entries of a key in the order of insertion.
    std::vector<PolyglotEntry> get(std::uint64_t hash) const;
    // Draws one of the entries of the position and returns its move as generated.
    // `from` is NO_BOOK_MOVE if there is none, or if the one drawn is not possible.
    Move getMove(const Position& position) const;

private:
    std::map<std::uint64_t, std::vector<PolyglotEntry>> innerMap;
    static bool randomSeeded;
};

// One move of a book line: the key of the position before it, and its code.
struct HashEntryPair {
    std::uint64_t hash;
    PolyglotEntry polyglotEntry;
};

// Replays a line of moves from the start position. Moves are four characters each at
// a stride of five; the first that is not possible ends the line. Castling is the
// king's move, or, with `usePolyglotNotation`, the king taking its own rook.
std::vector<HashEntryPair> getLineFromString(const std::string& str, bool usePolyglotNotation);

// Puts every move of a line into the book.
void addLine(PolyglotBook& book, const std::string& str, bool usePolyglotNotation = false);
