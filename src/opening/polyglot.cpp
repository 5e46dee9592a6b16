#include "opening/polyglot.h"

#include "board/moveGenerator.h"
#include "notation/ioFuncs.h"
#include "opening/standard.h"

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iostream>

namespace {

// Widths and places in the move code.
constexpr int ROW_FACTOR = 8;
constexpr int FROM_FACTOR = 64;
constexpr int PROMOTION_SHIFT = 12;

// Promotion codes: by piece type, and back.
constexpr std::array<int, 7> codesByType = {0, 0, 3, 1, 2, 4, 0};
constexpr std::array<PieceType, 16> typesByCode = {NO_PIECE, KNIGHT, BISHOP, ROOK, QUEEN};

constexpr std::size_t MOVE_STRIDE = 5; // characters of a book line from move to move

// What a move code tells, in the engine's own terms.
struct CodedMove {
    FieldIndex from;
    FieldIndex to;
    PieceType promotion;

    bool operator==(const CodedMove&) const = default;
};

CodedMove codedMoveOf(const Move& move) {
    if (move.isCastle()) {
        const CastlingFields& fields = move.getCastlingFields();
        return {fields.kingFrom, fields.rookFrom, NO_PIECE};
    }
    return {move.from, move.to, move.promotionPieceType};
}

FieldIndex fieldOfCode(int code) {
    return Position::getIndexFrom07Notation(code % ROW_FACTOR, code / ROW_FACTOR % ROW_FACTOR);
}

// The target of a king's castling move, turned to the rook that the code names.
FieldIndex rookTargetOf(FieldIndex from, FieldIndex to) {
    for (const CastlingFields& fields : castlingFields) {
        if (from == fields.kingFrom && to == fields.kingTo) {
            return fields.rookFrom;
        }
    }
    return to;
}

} // namespace

PolyglotEntry::PolyglotEntry(const Move& move, int _weight, int _learn)
    : PolyglotEntry(getIntRepresentation(move), _weight, _learn) {
}

PolyglotEntry::PolyglotEntry(std::int16_t _moveInt, int _weight, int _learn)
    : moveInt(_moveInt), weight(_weight), learn(_learn) {
}

std::int16_t PolyglotEntry::getIntRepresentation(const Move& move) {
    const auto [from, to, promotion] = codedMoveOf(move);
    std::int16_t code = 0;
    fillMove(from, to, code);
    return static_cast<std::int16_t>(code + (codesByType[at(promotion)] << PROMOTION_SHIFT));
}

void PolyglotEntry::fillMove(int from, int to, std::int16_t& result) {
    const int fromCode = Position::get07File(from) + ROW_FACTOR * Position::get07Row(from);
    const int toCode = Position::get07File(to) + ROW_FACTOR * Position::get07Row(to);
    result = static_cast<std::int16_t>(result + toCode + FROM_FACTOR * fromCode);
}

FieldIndex PolyglotEntry::getFrom() const {
    return fieldOfCode(static_cast<std::uint16_t>(moveInt) / FROM_FACTOR);
}

FieldIndex PolyglotEntry::getTo() const {
    return fieldOfCode(static_cast<std::uint16_t>(moveInt));
}

PieceType PolyglotEntry::getPromotionPiece() const {
    return typesByCode[at(static_cast<std::uint16_t>(moveInt) >> PROMOTION_SHIFT)];
}

bool PolyglotEntry::isMove(const Move& move) const {
    return codedMoveOf(move) == CodedMove{getFrom(), getTo(), getPromotionPiece()};
}

int PolyglotEntry::getMove(const Move* moves, int count) const {
    for (int i = 0; i < count; ++i) {
        if (isMove(moves[i])) {
            return i;
        }
    }
    return -1;
}

bool PolyglotBook::randomSeeded = false;

PolyglotBook::PolyglotBook() {
    if (!randomSeeded) {
        randomSeeded = true;
        resetRand();
    }
}

PolyglotBook PolyglotBook::getStandard() {
    PolyglotBook book;
    for (const std::string_view line : STANDARD_LINES) {
        addLine(book, std::string(line));
    }
    return book;
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

PolyglotBook PolyglotBook::getPcst() {
    return getBookFromFile("bin\\Debug\\PcstBook.txt", false);
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
    constexpr Move NO_MOVE = {NO_BOOK_MOVE, 0, NO_PIECE, NO_PIECE, ORDINARY_MOVE, NO_PIECE};
    const std::vector<PolyglotEntry> entries = get(position.hash);
    if (entries.empty()) {
        return NO_MOVE;
    }
    const std::size_t drawn = at(std::rand()) % entries.size();
    MoveArray moves;
    const int count = generateMoves(position, moves.data());
    const int index = entries[drawn].getMove(moves.data(), count);
    return index >= 0 ? moves[at(index)] : NO_MOVE;
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
        const PolyglotEntry entry({from, to, NO_PIECE, NO_PIECE, ORDINARY_MOVE, NO_PIECE}, 0, 0);

        MoveArray moves;
        const int count = generateMoves(position, moves.data());
        const int index = entry.getMove(moves.data(), count);
        if (index < 0) {
            break;
        }
        result.push_back({position.hash, entry});
        DoMoveContext context;
        context.init();
        doMove(position, moves[at(index)], context);
    }
    return result;
}

void addLine(PolyglotBook& book, const std::string& str, bool usePolyglotNotation) {
    for (const HashEntryPair& pair : getLineFromString(str, usePolyglotNotation)) {
        book.put(pair.hash, pair.polyglotEntry);
    }
}
