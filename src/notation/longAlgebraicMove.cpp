#include "notation/longAlgebraicMove.h"

#include "notation/ioFuncs.h"

LongAlgebraicMove::LongAlgebraicMove(const Move& move)
    : from(move.from), to(move.to), promotionType(move.promotionPieceType) {
    if (move.isCastle()) {
        from = move.getCastlingFields().kingFrom;
        to = move.getCastlingFields().kingTo;
    }
}

LongAlgebraicMove::LongAlgebraicMove(const std::string& text)
    : from(NOT_FOUND), to(NOT_FOUND), promotionType(NO_PIECE) {
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

int LongAlgebraicMove::getIndexOfMove(const Move* moves, int lenght) const {
    for (int i = 0; i < lenght; ++i) {
        const LongAlgebraicMove candidate(moves[i]);
        if (candidate.from == from && candidate.to == to &&
            (promotionType == NO_PIECE || candidate.promotionType == promotionType)) {
            return i;
        }
    }
    return -1;
}
