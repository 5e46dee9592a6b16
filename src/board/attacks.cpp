#include "board/attacks.h"

namespace {

// Whether `type`, met on ray `ray` after `steps` steps, attacks along that ray.
bool attacksAlongRay(PieceType type, int ray, int steps, Color colorToMove) {
    switch (type) {
    case QUEEN:
        return true;
    case ROOK:
        return ray >= FIRST_STRAIGHT_RAY;
    case BISHOP:
        return ray < FIRST_STRAIGHT_RAY;
    case KING:
        return steps == 1;
    case PAWN: {
        // Enemy pawns attack from the two diagonals ahead of the side to move.
        const int rayOfPawn = ray - 2 * colorToMove;
        return steps == 1 && (rayOfPawn == 0 || rayOfPawn == 1);
    }
    default:
        return false;
    }
}

} // namespace

bool isFieldThreatened(const Position& pozice, FieldIndex policko) {
    const Color enemy = pozice.oppositeColorToMove();
    for (int ray = 0; ray < static_cast<int>(kralOffsetOhrozeno.size()); ++ray) {
        const int offset = kralOffsetOhrozeno[at(ray)];
        FieldIndex target = policko + offset;
        int steps = 1;
        while (pozice.board[target].color == EMPTY) {
            target += offset;
            ++steps;
        }
        const Field& field = pozice.board[target];
        if (field.color == enemy &&
            attacksAlongRay(field.pieceType, ray, steps, pozice.colorToMove)) {
            return true;
        }
    }
    for (const int offset : knightMovesOffsets) {
        const Field& field = pozice.board[policko + offset];
        if (field.color == enemy && field.pieceType == KNIGHT) {
            return true;
        }
    }
    return false;
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
