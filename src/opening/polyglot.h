// The opening book in memory.
#pragma once

#include "board/position.h"
#include "notation/polyglotEntry.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

// Book moves by position key. A move that several lines share has several entries, so that it is
// drawn more often.
class PolyglotBook {
public:
    // `from` of the result of getMove() if there is no book move.
    static constexpr auto NO_BOOK_MOVE = static_cast<FieldIndex>(127);

    // Constructs an empty book. The first book of the process seeds the random generator.
    PolyglotBook();

    // The book that the engine plays from. The first call builds it.
    static const PolyglotBook& getStandard();
    // Reads a text file with one book line per text line; see getLineFromString(). If it cannot
    // be opened, prints a message to standard error and returns an empty book.
    static PolyglotBook getBookFromFile(const std::string& filePath, bool polyglotNotation);

    // Seeds the random generator with the time in seconds.
    static void resetRand();

    bool isEmpty() const { return innerMap.empty(); }
    // Appends an entry to those of a key.
    void put(std::uint64_t hash, const PolyglotEntry& entry);
    // The entries of a key in the order of insertion; empty if there are none.
    std::vector<PolyglotEntry> get(std::uint64_t hash) const;
    // Draws one of the entries of the position and returns its move. `from` is NO_BOOK_MOVE if
    // there is no entry, or if the one drawn describes no pseudo-legal move.
    Move getMove(const Position& position) const;

private:
    std::map<std::uint64_t, std::vector<PolyglotEntry>> innerMap;
    static bool randomSeeded; // by the first book of the process
};

// One move of a book line, and the key of the position before it.
struct HashEntryPair {
    std::uint64_t hash;
    PolyglotEntry polyglotEntry;
};

// Reads a line of moves from the start position: four characters each, separated by one character.
// The first move that is not pseudo-legal ends the line. A castling is written as the king's move;
// with `usePolyglotNotation`, as the king capturing its own rook.
std::vector<HashEntryPair> getLineFromString(const std::string& str, bool usePolyglotNotation);

// Puts each move of a line into the book; see getLineFromString().
void addLine(PolyglotBook& book, const std::string& str, bool usePolyglotNotation = false);
