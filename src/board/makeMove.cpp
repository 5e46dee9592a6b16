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

// Debug builds check the whole position after every change.
void checkInvariants([[maybe_unused]] const Position& position) {
#ifdef KESTRAN_CHECK_POSITIONS
    requireConsistent(position);
#endif
}

// Turns the piece on a field, with its entry, into one of another kind.
void changePiece(Position& position, IncrementalState& incremental, FieldIndex field,
                 PieceType type) {
    const Color color = position.board[field].color;
    const std::int8_t entry = removePiece(position, incremental, field);
    putPiece(position, incremental, field, color, type, entry);
}

// ---- The pieces of a move, forward and back; the mover is to move ----

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

// ---- What else a move changes ----

void loseCastle(IncrementalState& incremental, int right) {
    if (incremental.castles[right]) {
        incremental.castles[right] = false;
        incremental.hash ^= getCastleHash(right);
    }
}

// A king that moves loses both rights of its colour; a rook that leaves its corner or is
// taken there loses one.
void loseCastles(IncrementalState& incremental, const Move& move, Color mover) {
    constexpr FieldSet HOMES =
        setOf(A1) | setOf(E1) | setOf(H1) | setOf(A8) | setOf(E8) | setOf(H8);
    if (!move.isCastle() && ((setOf(move.from) | setOf(move.to)) & HOMES) == NO_FIELDS) {
        return;
    }
    if (move.isCastle() || move.pieceMoved == KING) {
        loseCastle(incremental, 2 * mover);
        loseCastle(incremental, 2 * mover + 1);
    }
    if (move.isCastle()) {
        return;
    }
    for (const Color color : COLORS) {
        for (const int right : {2 * color, 2 * color + 1}) {
            const FieldIndex corner = castlingFields[right].rookFrom;
            if (move.from == corner || move.to == corner) {
                loseCastle(incremental, right);
                break;
            }
        }
    }
}

// The field of a pawn that has just made a double step.
FieldIndex epFieldAfter(const Move& move) {
    const bool isDoubleStep = !move.isCastle() && move.pieceMoved == PAWN &&
                              (move.to - move.from == 20 || move.from - move.to == 20);
    return isDoubleStep ? move.to : NO_FIELD;
}

bool isIrreversible(const Move& move) {
    return !move.isCastle() && (move.pieceMoved == PAWN || move.pieceCaptured != NO_PIECE);
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
    const std::uint64_t oldEpHash = getEpHash(position);
    doPieces(position, incremental, move, context);
    loseCastles(incremental, move, position.colorToMove);
    incremental.epField = epFieldAfter(move);
    incremental.halfMoveClock = isIrreversible(move) ? 0 : incremental.halfMoveClock + 1;
    incremental.moveEvaluation += getMoveEvaluation(move);
    toggleColorToMove(position);
    incremental.hash ^= oldEpHash ^ getEpHash(position) ^ WHITE_TO_MOVE_HASH;
    checkInvariants(position);
}

void undoMove(Position& position, const Move& move, const DoMoveContext& context) {
    toggleColorToMove(position);
    IncrementalState unread = {};
    undoPieces(position, unread, move, context);
    position.incremental = context.incremental;
    checkInvariants(position);
}

int generateLegalMoves(const Position& position, MoveArray& outputMoves) {
    const int generated = generateMoves(position, outputMoves);
    const CheckersAndPins lines(position);
    int legal = 0;
    for (int i = 0; i < generated; ++i) {
        if (isLegal(lines, outputMoves[i])) {
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
