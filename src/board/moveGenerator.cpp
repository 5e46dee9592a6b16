#include "board/moveGenerator.h"

#include "board/pseudoLegalMoves.h"

int generateMoves(const Position& position, MoveArray& outputMoves) {
    const Color color = position.colorToMove;
    const PseudoLegalMoves targets(position);
    int count = 0;
    const auto append = [&](const Move& move) {
        outputMoves[count++] = move;
        return true;
    };
    targets.forEachPiece(position.entries & ENTRIES_OF[color], [&](const PieceTargets& piece) {
        forEachTarget(piece, piece.targets, color, [&](FieldIndex to) {
            const Field& target = position.board[to];
            const PieceType captured = target.color != EMPTY ? target.pieceType : NO_PIECE;
            return forEachMoveTo(piece, to, captured, color, append);
        });
        if (piece.type == KING) {
            for (const bool queenSide : {true, false}) {
                if (targets.canCastle(queenSide)) {
                    append(makeCastling(position, queenSide));
                }
            }
        } else if (piece.type == PAWN && targets.canTakeEnPassant(piece.from)) {
            append(makeEnPassant(position, piece.from));
        }
        return true;
    });
    return count;
}
