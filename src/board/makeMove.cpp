#include "board/makeMove.h"

#include "board/attacks.h"
#include "board/checkersAndPins.h"
#include "board/hashFunctions.h"
#include "board/moveGenerator.h"
#include "board/pieces.h"

#ifdef KESTRAN_CHECK_POSITIONS
#include "board/positionCheck.h"
#endif

namespace {

constexpr int CASTLING_BONUS = 10;

// Debug builds check the whole position after each change.
void checkInvariants([[maybe_unused]] const Position& position) {
#ifdef KESTRAN_CHECK_POSITIONS
    requireConsistent(position);
#endif
}

// Changes the type of the piece on `field`, which keeps its list entry.
void changePiece(Position& position, IncrementalState& incremental, FieldIndex field,
                 PieceType type) {
    const Color color = position.board[field].color;
    const std::int8_t entry = removePiece(position, incremental, field);
    putPiece(position, incremental, field, color, type, entry);
}

// ---- The pieces of a move, forward and back; position.colorToMove is the mover ----

void doPieces(Position& position, IncrementalState& incremental, const Move& move,
              DoMoveContext& context) {
    if (move.isCastle()) {
        const CastlingFields& fields = move.getCastlingFields();
        movePiece(position, incremental, fields.kingFrom, fields.kingTo);
        movePiece(position, incremental, fields.rookFrom, fields.rookTo);
        return;
    }
    if (move.pieceCaptured != NO_PIECE) {
        context.tempPieceCapturedIndex =
            removePiece(position, incremental, move.getCapturedField());
    }
    movePiece(position, incremental, move.from, move.to);
    if (move.promotionPieceType != NO_PIECE) {
        changePiece(position, incremental, move.to, move.promotionPieceType);
    }
}

void undoPieces(Position& position, IncrementalState& incremental, const Move& move,
                const DoMoveContext& context) {
    if (move.isCastle()) {
        const CastlingFields& fields = move.getCastlingFields();
        movePiece(position, incremental, fields.kingTo, fields.kingFrom);
        movePiece(position, incremental, fields.rookTo, fields.rookFrom);
        return;
    }
    if (move.promotionPieceType != NO_PIECE) {
        changePiece(position, incremental, move.to, PAWN);
    }
    movePiece(position, incremental, move.to, move.from);
    if (move.pieceCaptured != NO_PIECE) {
        putPiece(position, incremental, move.getCapturedField(), position.oppositeColorToMove(),
                 move.pieceCaptured, context.tempPieceCapturedIndex);
    }
}

// ---- The rest of the incremental state ----

void loseCastle(IncrementalState& incremental, int right) {
    if (incremental.castles[right]) {
        incremental.castles[right] = false;
        incremental.hash ^= getCastleHash(right);
    }
}

void loseBothCastles(IncrementalState& incremental, Color color) {
    loseCastle(incremental, rightOf(color, true));
    loseCastle(incremental, rightOf(color, false));
}

// A king loses both rights when it moves. A rook loses its right when it leaves its corner or is
// captured there.
void loseCastles(IncrementalState& incremental, const Move& move, Color mover) {
    constexpr FieldSet HOMES =
        setOf(A1) | setOf(E1) | setOf(H1) | setOf(A8) | setOf(E8) | setOf(H8);
    if (move.isCastle()) {
        loseBothCastles(incremental, mover);
        return;
    }
    const FieldSet touched = setOf(move.from) | setOf(move.to);
    if ((touched & HOMES) == NO_FIELDS) {
        return;
    }
    if (move.pieceMoved == KING) {
        loseBothCastles(incremental, mover);
    }
    for (const Color color : COLORS) {
        const int queenSide = rightOf(color, true);
        const int kingSide = rightOf(color, false);
        if (contains(touched, castlingFields[queenSide].rookFrom)) {
            loseCastle(incremental, queenSide);
        } else if (contains(touched, castlingFields[kingSide].rookFrom)) {
            loseCastle(incremental, kingSide);
        }
    }
}

// The square that a double step of a pawn reaches; NO_FIELD for any other move.
FieldIndex epFieldAfter(const Move& move, Color mover) {
    const bool isDoubleStep = !move.isCastle() && move.pieceMoved == PAWN &&
                              move.to - move.from == barva_OffsetDvePoleDopredu[mover];
    return isDoubleStep ? move.to : NO_FIELD;
}

int getMoveEvaluation(const Move& move) {
    if (!move.isCastle()) {
        return 0;
    }
    return move.castle_ep_flag <= WHITE_KING_SIDE ? CASTLING_BONUS : -CASTLING_BONUS;
}

void toggleColorToMove(Position& position) {
    position.colorToMove = position.oppositeColorToMove();
    position.check = CHECK_UNKNOWN;
}

} // namespace

bool doMove(Position& position, const Move& move, DoMoveContext& context) {
    if (!isLegal(CheckersAndPins(position), move)) {
        return false;
    }
    playMove(position, move, context);
    return true;
}

void playMove(Position& position, const Move& move, DoMoveContext& context) {
    IncrementalState& incremental = position.incremental;
    context.incremental = incremental;
    const Color mover = position.colorToMove;
    const std::uint64_t oldEpHash = getEpHash(position);
    doPieces(position, incremental, move, context);
    loseCastles(incremental, move, mover);
    incremental.epField = epFieldAfter(move, mover);
    incremental.halfMoveClock = move.resetsClock() ? 0 : incremental.halfMoveClock + 1;
    incremental.moveEvaluation += getMoveEvaluation(move);
    toggleColorToMove(position);
    incremental.hash ^= oldEpHash ^ getEpHash(position) ^ WHITE_TO_MOVE_HASH;
    checkInvariants(position);
}

void undoMove(Position& position, const Move& move, const DoMoveContext& context) {
    toggleColorToMove(position);
    IncrementalState scratch = {};
    undoPieces(position, scratch, move, context);
    position.incremental = context.incremental;
    checkInvariants(position);
}

int generateLegalMoves(const Position& position, MoveArray& outputMoves) {
    const int generated = generateMoves(position, outputMoves);
    const CheckersAndPins checkersAndPins(position);
    int legal = 0;
    for (int i = 0; i < generated; ++i) {
        if (isLegal(checkersAndPins, outputMoves[i])) {
            outputMoves[legal++] = outputMoves[i];
        }
    }
    return legal;
}

bool isInMate(const Position& position) {
    if (!isInCheck(position)) {
        return false;
    }
    MoveArray moves;
    return generateLegalMoves(position, moves) == 0;
}

Position positionAfter(const Position& position, const Move& move) {
    Position after = position;
    DoMoveContext context;
    playMove(after, move, context);
    return after;
}
