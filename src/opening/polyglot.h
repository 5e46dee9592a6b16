// The opening book in memory, and how it is built.
#pragma once

#include "board/position.h"
#include "notation/polyglotEntry.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

// Book moves by position key. A move that several lines share stands several times,
// and so is drawn more often.
class PolyglotBook {
public:
    // `from` of the answer for no book move; its other fields mean nothing.
    static constexpr auto NO_BOOK_MOVE = static_cast<FieldIndex>(127);

    // An empty book. The first one of the process seeds the random generator.
    PolyglotBook();

    // The book that the engine plays from: a copy of the one that the first call makes.
    static PolyglotBook getStandard();
    // The lines of a text file, one a line; empty, with a message on standard error,
    // if it cannot be opened.
    static PolyglotBook getBookFromFile(const std::string& filePath, bool polyglotNotation);
    // The book of a file with a fixed path.
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
