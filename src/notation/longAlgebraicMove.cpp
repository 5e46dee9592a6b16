#include "notation/longAlgebraicMove.h"

#include "notation/letters.h"

#include <algorithm>

LongAlgebraicMove::LongAlgebraicMove(const Move& move)
    : from(move.from), to(move.to), promotionType(move.promotionPieceType) {
    if (move.isCastle()) {
        from = move.getCastlingFields().kingFrom;
        to = move.getCastlingFields().kingTo;
    }
}

LongAlgebraicMove::LongAlgebraicMove(const std::string& text)
    : from(static_cast<FieldIndex>(NOT_FOUND)), to(from), promotionType(NO_PIECE) {
    if (text.size() < 4) {
        return;
    }
    from = parseField(text[0], text[1]);
    to = parseField(text[2], text[3]);
    if (text.size() > 4) {
        promotionType = parsePromotionType(text[4]);
    }
}

std::string LongAlgebraicMove::toString() const {
    return fieldToString(from, true) + fieldToString(to, true) +
           promotionTypeToString(promotionType);
}

int LongAlgebraicMove::getIndexOfMove(std::span<const Move> moves) const {
    const auto place = std::find_if(moves.begin(), moves.end(), [this](const Move& move) {
        const LongAlgebraicMove candidate(move);
        return candidate.from == from && candidate.to == to &&
               (promotionType == NO_PIECE || candidate.promotionType == promotionType);
    });
    return place != moves.end() ? static_cast<int>(place - moves.begin()) : -1;
}
