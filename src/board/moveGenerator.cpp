#include "board/moveGenerator.h"

#include "board/hashFunctions.h"

#ifdef KESTRAN_CHECK_POSITIONS
#include "board/boardRepresentationUtils.h"
#endif

namespace {

// Offsets of the pieces' steps: +1 is one file towards h, +10 one rank up.
constexpr std::array<int, 8> knightMovesOffsets = {19, 21, 8, 12, -8, -12, -19, -21};
constexpr std::array<int, 4> bishopOffset = {9, 11, -9, -11};
constexpr std::array<int, 4> vezOffset = {1, 10, -1, -10};
constexpr std::array<int, 8> kralOffset = {-1, 1, -10, 10, -11, 11, -9, 9};
// For attack detection: first the four diagonals, then the four straight lines.
constexpr std::array<int, 8> kralOffsetOhrozeno = {9, 11, -9, -11, -1, 1, -10, 10};
constexpr int FIRST_STRAIGHT_RAY = 4;

constexpr std::array<PieceType, 4> pawnPromotePieceTypes = {KNIGHT, BISHOP, ROOK, QUEEN};

constexpr int CASTLING_BONUS = 10;

bool isWithin(FieldIndex field, FieldIndex first, FieldIndex last) {
    return first <= field && field <= last;
}

// Debug builds check the whole position after every change.
void checkInvariants([[maybe_unused]] const Position& position) {
#ifdef KESTRAN_CHECK_POSITIONS
    requireConsistent(position);
#endif
}

// ---- Attack detection ----

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

// Whether a piece of the side not to move attacks field `policko`. What stands on
// that field plays no part.
bool isFieldThreatened(const Position& pozice, FieldIndex policko) {
    const Color enemy = pozice.oppositeColorToMove();
    for (int ray = 0; ray < static_cast<int>(kralOffsetOhrozeno.size()); ++ray) {
        const int offset = kralOffsetOhrozeno[at(ray)];
        int target = policko + offset;
        int steps = 1;
        while (pozice.board[at(target)].color == EMPTY) {
            target += offset;
            ++steps;
        }
        const Field& field = pozice.board[at(target)];
        if (field.color == enemy &&
            attacksAlongRay(field.pieceType, ray, steps, pozice.colorToMove)) {
            return true;
        }
    }
    for (const int offset : knightMovesOffsets) {
        const Field& field = pozice.board[at(policko + offset)];
        if (field.color == enemy && field.pieceType == KNIGHT) {
            return true;
        }
    }
    return false;
}

// Whether the king of `colorToMove` stands attacked; leaves the cache alone. doMove
// asks it about the mover, before it hands the move to the other side.
bool isInCheckNoCaching(const Position& position) {
    const int king = KingIndex[at(position.colorToMove)];
    return isFieldThreatened(position, position.pieces[at(king)].boardPosition);
}

// ---- Generation: each function appends at the cursor and advances it ----

void generateGenericMove(const Position& position, Move*& cursor, const Piece& piece,
                         PieceType pieceType, int fieldToIndex) {
    const Field& target = position.board[at(fieldToIndex)];
    const PieceType captured = target.color != EMPTY ? target.pieceType : NO_PIECE;
    initMove(*cursor, piece.boardPosition, static_cast<FieldIndex>(fieldToIndex), pieceType,
             captured);
    ++cursor;
}

template <std::size_t N>
void generateSteps(const Position& position, Move*& cursor, const Piece& piece,
                   const std::array<int, N>& offsets) {
    for (const int offset : offsets) {
        const int target = piece.boardPosition + offset;
        const Color color = position.board[at(target)].color;
        if (color != BORDER && color != position.colorToMove) {
            generateGenericMove(position, cursor, piece, piece.pieceType, target);
        }
    }
}

template <std::size_t N>
void generateRays(const Position& position, Move*& cursor, const Piece& piece,
                  const std::array<int, N>& offsets) {
    for (const int offset : offsets) {
        int target = piece.boardPosition + offset;
        while (position.board[at(target)].color == EMPTY) {
            generateGenericMove(position, cursor, piece, piece.pieceType, target);
            target += offset;
        }
        if (position.board[at(target)].color == position.oppositeColorToMove()) {
            generateGenericMove(position, cursor, piece, piece.pieceType, target);
        }
    }
}

// Whether the king can castle with right `right`, which it still has: the fields
// that it leaves, crosses and reaches are safe, all fields up to the rook empty.
bool canCastle(const Position& position, int right) {
    const FieldIndex kingFrom = castlingFields[at(right)].kingFrom;
    const bool queenSide = right % 2 == 0;
    const int direction = queenSide ? -1 : 1;
    for (int j = 0; j <= 2; ++j) {
        const auto field = static_cast<FieldIndex>(kingFrom + j * direction);
        const bool blocked = j > 0 && position.board[at(field)].color != EMPTY;
        if (blocked || isFieldThreatened(position, field)) {
            return false;
        }
    }
    return !queenSide || position.board[at(kingFrom - 3)].color == EMPTY;
}

void generateCastling(const Position& position, Move*& cursor, const Piece& king) {
    const int firstRight = 2 * position.colorToMove;
    if (king.boardPosition != castlingFields[at(firstRight)].kingFrom) {
        return;
    }
    for (int right = firstRight; right < firstRight + 2; ++right) {
        if (position.castles[at(right)] && canCastle(position, right)) {
            cursor->init();
            cursor->castle_ep_flag = static_cast<std::int8_t>(right + 1);
            ++cursor;
        }
    }
}

// A pawn's move to `target`: one record, or one for each piece it can become.
void generatePawnMove(const Position& position, Move*& cursor, const Piece& pawn, int target) {
    const auto color = at(position.colorToMove);
    if (!isWithin(pawn.boardPosition, barva_pesciPremenaMin[color], barva_pesciPremenaMax[color])) {
        generateGenericMove(position, cursor, pawn, PAWN, target);
        return;
    }
    for (const PieceType promotion : pawnPromotePieceTypes) {
        generateGenericMove(position, cursor, pawn, PAWN, target);
        cursor[-1].promotionPieceType = promotion;
    }
}

void generatePawn(const Position& position, Move*& cursor, const Piece& pawn) {
    const auto color = at(position.colorToMove);
    const FieldIndex from = pawn.boardPosition;

    const int ahead = from + pawnOnePieceAheadOffset[color];
    if (position.board[at(ahead)].color == EMPTY) {
        generatePawnMove(position, cursor, pawn, ahead);
        const int twoAhead = from + barva_OffsetDvePoleDopredu[color];
        if (isWithin(from, pawnStartingRowIndexMin[color], PawnStartingRowIndexMax[color]) &&
            position.board[at(twoAhead)].color == EMPTY) {
            generatePawnMove(position, cursor, pawn, twoAhead);
        }
    }
    for (const int target : {ahead - 1, ahead + 1}) {
        if (position.board[at(target)].color == position.oppositeColorToMove()) {
            generatePawnMove(position, cursor, pawn, target);
        }
    }
    if (position.epField + 1 == from || position.epField - 1 == from) {
        const int target = position.epField + pawnOnePieceAheadOffset[color];
        initMove(*cursor, from, static_cast<FieldIndex>(target), PAWN, PAWN);
        cursor->castle_ep_flag = EN_PASSANT;
        ++cursor;
    }
}

void generatePiece(const Position& position, Move*& cursor, const Piece& piece) {
    switch (piece.pieceType) {
    case PAWN:
        generatePawn(position, cursor, piece);
        break;
    case ROOK:
        generateRays(position, cursor, piece, vezOffset);
        break;
    case KNIGHT:
        generateSteps(position, cursor, piece, knightMovesOffsets);
        break;
    case BISHOP:
        generateRays(position, cursor, piece, bishopOffset);
        break;
    case QUEEN:
        generateRays(position, cursor, piece, kralOffset);
        break;
    case KING:
        generateSteps(position, cursor, piece, kralOffset);
        generateCastling(position, cursor, piece);
        break;
    default:
        break;
    }
}

// ---- Making and unmaking ----

// Moves a piece in both views. `from` keeps left-overs, the target is overwritten.
void movePieceFromTo(Position& position, FieldIndex from, FieldIndex to) {
    Field& source = position.board[at(from)];
    position.pieces[at(source.pieceIndexInList)].boardPosition = to;
    position.board[at(to)] = source;
    source.color = EMPTY;
}

void toggleColorToMove(Position& position) {
    position.colorToMove = position.oppositeColorToMove();
}

// Clears a right that still stands, and notes it in the context, so that the key
// counts each lost right once. `convenientIndex` runs 1 to 4 like castle_ep_flag.
void invalidateCastle(Position& position, DoMoveContext& context, int convenientIndex) {
    const auto right = at(convenientIndex - 1);
    if (position.castles[right]) {
        position.castles[right] = false;
        context.lostCastles[right] = true;
    }
}

void invalidateCastlesOfColor(Position& position, DoMoveContext& context, Color color) {
    invalidateCastle(position, context, 2 * color + 2);
    invalidateCastle(position, context, 2 * color + 1);
}

// Clears the right of a rook that leaves its corner or is taken there.
void invalidateCastlesOfCorners(Position& position, const Move& move, DoMoveContext& context) {
    for (const Color color : {WHITE, BLACK}) {
        const int queenSide = 2 * color;
        for (const int right : {queenSide, queenSide + 1}) {
            const FieldIndex corner = castlingFields[at(right)].rookFrom;
            if (move.from == corner || move.to == corner) {
                invalidateCastle(position, context, right + 1);
                break;
            }
        }
    }
}

void incrementHalfMove(Position& position, const Move& move) {
    const bool irreversible =
        !move.isCastle() && (move.pieceMoved == PAWN || move.pieceCaptured != NO_PIECE);
    position.halfMoveClock = irreversible ? 0 : position.halfMoveClock + 1;
}

// What `move` adds to the mover's material and takes from the other side's.
int materialGain(const Move& move) {
    return move.promotionPieceType != NO_PIECE
               ? pieceEvaluationValues[at(move.promotionPieceType)] - pieceEvaluationValues[PAWN]
               : 0;
}

// Called after the side was toggled: the mover is the side not to move.
void updateMaterial(Position& position, const Move& move) {
    position.material[at(position.oppositeColorToMove())] += materialGain(move);
    position.material[at(position.colorToMove)] -= pieceEvaluationValues[at(move.pieceCaptured)];
}

// Called before the side is toggled back. A castling holds 0 in both fields.
void unUpdateMaterial(Position& position, const Move& move) {
    position.material[at(position.oppositeColorToMove())] -= materialGain(move);
    position.material[at(position.colorToMove)] += pieceEvaluationValues[at(move.pieceCaptured)];
}

int getMoveEvaluation(const Move& move) {
    if (!move.isCastle()) {
        return 0;
    }
    return move.castle_ep_flag <= WHITE_KING_SIDE ? CASTLING_BONUS : -CASTLING_BONUS;
}

void updateMoveEvaluation(Position& position, const Move& move) {
    position.moveEvaluation += getMoveEvaluation(move);
}

void undoMoveEvaluation(Position& position, const Move& move) {
    position.moveEvaluation -= getMoveEvaluation(move);
}

// Takes the captured piece out of both views and notes its entry in the context.
void removeCaptured(Position& position, const Move& move, DoMoveContext& context) {
    Field& victim = position.board[at(move.getCapturedField())];
    context.tempPieceCapturedIndex = victim.pieceIndexInList;
    position.pieces[at(victim.pieceIndexInList)].pieceType = NO_PIECE;
    victim.color = EMPTY;
}

// Puts the captured piece back into both views. The mover is to move.
void restoreCaptured(Position& position, const Move& move, std::int8_t tempPieceCapturedIndex) {
    const FieldIndex field = move.getCapturedField();
    position.board[at(field)] = {position.oppositeColorToMove(), move.pieceCaptured,
                                 tempPieceCapturedIndex};
    position.pieces[at(tempPieceCapturedIndex)] = {move.pieceCaptured, field};
}

// Puts the pieces of a move that is no castling back. The mover is to move.
void basicRollbackMove(Position& position, const Move& move, std::int8_t tempPieceCapturedIndex) {
    movePieceFromTo(position, move.to, move.from);
    if (move.pieceCaptured != NO_PIECE) {
        restoreCaptured(position, move, tempPieceCapturedIndex);
    }
}

void setTypeOfPieceOn(Position& position, FieldIndex index, PieceType type) {
    Field& field = position.board[at(index)];
    field.pieceType = type;
    position.pieces[at(field.pieceIndexInList)].pieceType = type;
}

// If `move` castles: puts king and rook back and returns true.
bool undoIfCastles(Position& position, const Move& move) {
    if (!move.isCastle()) {
        return false;
    }
    const CastlingFields& fields = move.getCastlingFields();
    movePieceFromTo(position, fields.kingTo, fields.kingFrom);
    movePieceFromTo(position, fields.rookTo, fields.rookFrom);
    return true;
}

// The board part of a castling, whose legality the generator has made sure of.
void doCastling(Position& position, const Move& move, DoMoveContext& context) {
    invalidateCastlesOfColor(position, context, position.colorToMove);
    const CastlingFields& fields = move.getCastlingFields();
    movePieceFromTo(position, fields.kingFrom, fields.kingTo);
    movePieceFromTo(position, fields.rookFrom, fields.rookTo);
    position.epField = 0;
}

// The board part of any other move. False if the mover's king would stand attacked;
// board and list are then as they were, and nothing else has been touched.
bool doOrdinaryMove(Position& position, const Move& move, DoMoveContext& context) {
    if (move.pieceCaptured != NO_PIECE) {
        removeCaptured(position, move, context);
    }
    movePieceFromTo(position, move.from, move.to);
    if (isInCheckNoCaching(position)) {
        basicRollbackMove(position, move, context.tempPieceCapturedIndex);
        return false;
    }
    if (move.promotionPieceType != NO_PIECE) {
        setTypeOfPieceOn(position, move.to, move.promotionPieceType);
    }
    invalidateCastlesOfCorners(position, move, context);
    if (move.pieceMoved == KING) {
        invalidateCastlesOfColor(position, context, position.colorToMove);
    }
    const int step = move.from - move.to;
    const bool doubleStep = move.pieceMoved == PAWN && (step == 20 || step == -20);
    position.epField = doubleStep ? move.to : FieldIndex{0};
    return true;
}

} // namespace

int generateMoves(const Position& position, Move* outputMoves) {
    Move* cursor = outputMoves;
    const auto color = at(position.colorToMove);
    for (int i = PiecesStart[color]; i < PiecesEnd[color]; ++i) {
        generatePiece(position, cursor, position.pieces[at(i)]);
    }
    return static_cast<int>(cursor - outputMoves);
}

bool isInCheck(Position& position) {
    if (position.check == CHECK_UNKNOWN) {
        position.check = isInCheckNoCaching(position) ? IS_CHECK : IS_NOT_CHECK;
    }
    return position.check == IS_CHECK;
}

bool doMove(Position& position, const Move& move, DoMoveContext& context) {
    context.epField = position.epField;
    context.halfMoveClock = position.halfMoveClock;
    if (move.isCastle()) {
        doCastling(position, move, context);
    } else if (!doOrdinaryMove(position, move, context)) {
        checkInvariants(position);
        return false;
    }
    toggleColorToMove(position);
    incrementHalfMove(position, move);
    context.originalHash = position.hash;
    updateHashMoveDone(position, move, context);
    updateMoveEvaluation(position, move);
    updateMaterial(position, move);
    position.check = CHECK_UNKNOWN;
    checkInvariants(position);
    return true;
}

void undoMove(Position& position, const Move& move, const DoMoveContext& context) {
    position.check = CHECK_UNKNOWN;
    unUpdateMaterial(position, move);
    undoMoveEvaluation(position, move);
    position.hash = context.originalHash;
    position.halfMoveClock = context.halfMoveClock;
    for (std::size_t i = 0; i < CASTLES; ++i) {
        position.castles[i] = context.lostCastles[i] || position.castles[i];
    }
    position.epField = context.epField;
    if (move.promotionPieceType != NO_PIECE) {
        setTypeOfPieceOn(position, move.to, PAWN);
    }
    toggleColorToMove(position);
    if (!undoIfCastles(position, move)) {
        basicRollbackMove(position, move, context.tempPieceCapturedIndex);
    }
    checkInvariants(position);
}

int generateLegalMoves(Position& position, Move* outputMoves) {
    const int generated = generateMoves(position, outputMoves);
    DoMoveContext context;
    int legal = 0;
    for (int i = 0; i < generated; ++i) {
        const Move move = outputMoves[i];
        context.init();
        if (doMove(position, move, context)) {
            undoMove(position, move, context);
            outputMoves[legal] = move;
            ++legal;
        }
    }
    return legal;
}

bool isInMate(Position& position) {
    if (!isInCheck(position)) {
        return false;
    }
    MoveArray moves;
    return generateLegalMoves(position, moves.data()) == 0;
}
