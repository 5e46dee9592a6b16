#include "board/attacks.h"

bool isFieldThreatened(const Position& position, FieldIndex field) {
    return isAttacked(position, field, position.ofColor[position.oppositeColorToMove()],
                      position.getOccupied());
}

bool isInCheckNoCaching(const Position& position) {
    const int king = KingIndex[position.colorToMove];
    return isFieldThreatened(position, position.pieces[king].boardPosition);
}

bool isInCheck(const Position& position) {
    if (position.check == CHECK_UNKNOWN) {
        position.check = isInCheckNoCaching(position) ? IS_CHECK : IS_NOT_CHECK;
    }
    return position.check == IS_CHECK;
}
