#include "board/moveGenerator.h"

#include "board/pseudoLegalMoves.h"

int generateMoves(const Position& position, MoveArray& outputMoves) {
    const Color color = position.colorToMove;
    const PseudoLegalMoves moves(position);
    int count = 0;
    const auto append = [&](const Move& move) { outputMoves[count++] = move; };
    moves.forEachPiece(position.entries & ENTRIES_OF[color], [&](const PieceTargets& piece) {
        forEachTarget(piece, piece.targets, color, [&](FieldIndex to) {
            const Field& target = position.board[to];
            const PieceType captured = target.color != EMPTY ? target.pieceType : NO_PIECE;
            forEachMoveTo(piece, to, captured, color, append);
        });
        if (piece.type == KING) {
            for (const bool queenSide : {true, false}) {
                if (moves.canCastle(queenSide)) {
                    append(makeCastling(position, queenSide));
                }
            }
        } else if (piece.type == PAWN && moves.canTakeEnPassant(piece.from)) {
            append(makeEnPassant(position, piece.from));
        }
    });
    return count;
}
