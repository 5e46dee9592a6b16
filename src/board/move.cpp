#include "board/move.h"

bool testMoveEquality(const Move& a, const Move& b) {
    if (a.castle_ep_flag != ORDINARY_MOVE && a.castle_ep_flag != EN_PASSANT) {
        return a.castle_ep_flag == b.castle_ep_flag;
    }
    return a.from == b.from && a.to == b.to && a.pieceMoved == b.pieceMoved &&
           a.promotionPieceType == b.promotionPieceType && a.pieceCaptured == b.pieceCaptured;
}
