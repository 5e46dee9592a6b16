#include "opening/polyglot.h"

#include "board/makeMove.h"
#include "board/moveGenerator.h"
#include "board/setUp.h"
#include "notation/letters.h"
#include "opening/standard.h"

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iostream>

namespace {

constexpr std::size_t MOVE_STRIDE = 5; // characters of a move and its separator

// The rook's square if the squares are those of a castling king, else `to`.
FieldIndex rookTargetOf(FieldIndex from, FieldIndex to) {
    for (const CastlingFields& fields : castlingFields) {
        if (from == fields.kingFrom && to == fields.kingTo) {
            return fields.rookFrom;
        }
    }
    return to;
}

} // namespace

bool PolyglotBook::randomSeeded = false;

PolyglotBook::PolyglotBook() {
    if (!randomSeeded) {
        randomSeeded = true;
        resetRand();
    }
}

const PolyglotBook& PolyglotBook::getStandard() {
    static const PolyglotBook standard = [] {
        PolyglotBook book;
        for (const std::string_view line : STANDARD_LINES) {
            addLine(book, std::string(line));
        }
        return book;
    }();
    return standard;
}

PolyglotBook PolyglotBook::getBookFromFile(const std::string& filePath, bool polyglotNotation) {
    PolyglotBook book;
    std::ifstream file(filePath);
    if (!file.is_open()) {
        std::cerr << "Unable to open file";
        return book;
    }
    std::string line;
    while (std::getline(file, line)) {
        addLine(book, line, polyglotNotation);
    }
    return book;
}

void PolyglotBook::resetRand() {
    std::srand(static_cast<unsigned>(std::time(nullptr)));
}

void PolyglotBook::put(std::uint64_t hash, const PolyglotEntry& entry) {
    innerMap[hash].push_back(entry);
}

std::vector<PolyglotEntry> PolyglotBook::get(std::uint64_t hash) const {
    const auto place = innerMap.find(hash);
    return place != innerMap.end() ? place->second : std::vector<PolyglotEntry>();
}

Move PolyglotBook::getMove(const Position& position) const {
    constexpr Move NO_MOVE = {NO_BOOK_MOVE, NO_FIELD, NO_PIECE, NO_PIECE, ORDINARY_MOVE, NO_PIECE};
    const std::vector<PolyglotEntry> entries = get(position.incremental.hash);
    if (entries.empty()) {
        return NO_MOVE;
    }
    const std::size_t drawn = at(std::rand()) % entries.size();
    MoveArray moves;
    const int count = generateMoves(position, moves);
    const int index = entries[drawn].getMove(moves.first(count));
    return index >= 0 ? moves[index] : NO_MOVE;
}

std::vector<HashEntryPair> getLineFromString(const std::string& str, bool usePolyglotNotation) {
    std::vector<HashEntryPair> result;
    Position position;
    initializeToStartPosition(position);
    const std::size_t moveCount = (str.size() + 1) / MOVE_STRIDE;
    for (std::size_t i = 0; i < moveCount; ++i) {
        const char* text = str.data() + i * MOVE_STRIDE;
        const FieldIndex from = parseField(text[0], text[1]);
        FieldIndex to = parseField(text[2], text[3]);
        if (from == NOT_FOUND || to == NOT_FOUND) {
            break;
        }
        if (!usePolyglotNotation) {
            to = rookTargetOf(from, to);
        }
        const PolyglotEntry entry({from, to, NO_PIECE, NO_PIECE, ORDINARY_MOVE, NO_PIECE});

        MoveArray moves;
        const int count = generateMoves(position, moves);
        const int index = entry.getMove(moves.first(count));
        if (index < 0) {
            break;
        }
        result.push_back({position.incremental.hash, entry});
        DoMoveContext context;
        doMove(position, moves[index], context);
    }
    return result;
}

void addLine(PolyglotBook& book, const std::string& str, bool usePolyglotNotation) {
    for (const HashEntryPair& pair : getLineFromString(str, usePolyglotNotation)) {
        book.put(pair.hash, pair.polyglotEntry);
    }
}
