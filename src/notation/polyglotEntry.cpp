#include "notation/polyglotEntry.h"

#include <algorithm>

namespace {

// The layout of the move code.
constexpr int ROW_FACTOR = 8;
constexpr int FROM_FACTOR = 64;
constexpr int PROMOTION_SHIFT = 12;

// Promotion codes: by piece type, and back.
constexpr ByType<int> codesByType = {0, 0, 3, 1, 2, 4, 0};
constexpr std::array<PieceType, 16> typesByCode = {NO_PIECE, KNIGHT, BISHOP, ROOK, QUEEN};

// The contents of a move code.
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
    return fieldOf(code % ROW_FACTOR, code / ROW_FACTOR % ROW_FACTOR);
}

} // namespace

PolyglotEntry::PolyglotEntry(const Move& move) : PolyglotEntry(getIntRepresentation(move)) {
}

std::int16_t PolyglotEntry::getIntRepresentation(const Move& move) {
    const auto [from, to, promotion] = codedMoveOf(move);
    std::int16_t code = 0;
    fillMove(from, to, code);
    return static_cast<std::int16_t>(code + (codesByType[promotion] << PROMOTION_SHIFT));
}

void PolyglotEntry::fillMove(FieldIndex from, FieldIndex to, std::int16_t& result) {
    const int fromCode = fileOf(from) + ROW_FACTOR * rowOf(from);
    const int toCode = fileOf(to) + ROW_FACTOR * rowOf(to);
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

int PolyglotEntry::getMove(std::span<const Move> moves) const {
    const auto place =
        std::find_if(moves.begin(), moves.end(), [this](const Move& m) { return isMove(m); });
    return place != moves.end() ? static_cast<int>(place - moves.begin()) : -1;
}
