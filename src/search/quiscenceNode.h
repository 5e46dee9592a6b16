// What a node of the quiescence search knows while its moves are tried: which there are, which are
// legal, which give check, and what the position behind one is worth.
#pragma once

#include "board/checkInfo.h"
#include "board/checkersAndPins.h"
#include "board/pseudoLegalMoves.h"
#include "search/evaluation.h"
#include "search/variant.h"

#include <optional>

struct QuiscenceNode {
    QuiscenceNode(Position& _position, Variant& _variant, int _alfa, int _beta, int _depth,
                  bool _isDeepestPly, bool isWatched)
        : position(_position), variant(_variant), alfa(_alfa), beta(_beta), depth(_depth),
          targets(_position), lines(_position), isInCheckOriginally(lines.isInCheck()),
          isDeepestPly(_isDeepestPly), material(-basicPositionEvaluationByMaterial(_position)) {
        if (!isInCheckOriginally && (!isDeepestPly || isWatched)) {
            checkInfo.emplace(position);
        }
    }

    // Whether the search follows a move further: it gives check, captures or promotes. In
    // check, and at the deepest ply unless somebody watches, all moves are treated alike, and
    // the answer is yes.
    bool isMoveInteresting(const Move& move) const {
        return move.pieceCaptured != NO_PIECE || move.promotionPieceType != NO_PIECE ||
               !checkInfo || checkInfo->givesCheck(move);
    }

    // The static score of the position behind a move, for the side to move here.
    int getStaticScore(PieceSum sum, int totalMaterial, int materialBalance) const {
        const int eval = positionalEvalOf(sum, totalMaterial <= END_GAME_MAX_MATERIAL);
        return materialBalance + (position.colorToMove == WHITE ? eval : -eval);
    }

    // Those of the fields that a piece goes to which its king allows.
    FieldSet getLegalFields(const PieceTargets& piece, FieldSet fields) const {
        return piece.type == KING ? lines.getSafeFields(fields)
                                  : fields & lines.getAllowedFields(piece.from);
    }

    Position& position;
    Variant& variant; // gets the line
    int alfa;         // the best score so far
    const int beta;
    const int depth;                    // plies below the entry
    const PseudoLegalMoves targets;     // all moves
    const CheckersAndPins lines;        // which of them are legal
    const bool isInCheckOriginally;     // before the moves
    const bool isDeepestPly;            // nothing is searched further
    const int material;                 // balance for the side to move
    std::optional<CheckInfo> checkInfo; // which moves give check, where that is asked
    int numberOfLegalMoves = 0;         // that have been tried or counted
    Variant localVariant;               // score of the move tried last, and line behind it
};
