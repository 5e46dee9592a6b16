// One node of the quiescence search: its moves, legality, checks and material.
#pragma once

#include "board/checkInfo.h"
#include "board/checkersAndPins.h"
#include "board/pseudoLegalMoves.h"
#include "search/evaluation.h"
#include "search/variant.h"

#include <optional>

struct QuiscenceNode {
    QuiscenceNode(Position& _position, Variant& _variant, int _alfa, int _beta, int _depth,
                  bool _isDeepestPly)
        : position(_position), variant(_variant), alfa(_alfa), beta(_beta), depth(_depth),
          moves(_position), pins(_position), isInCheckOriginally(pins.isInCheck()),
          isDeepestPly(_isDeepestPly), material(-basicPositionEvaluationByMaterial(_position)) {
        if (!isInCheckOriginally && !isDeepestPly) {
            checkInfo.emplace(position);
        }
    }

    // The squares of `fields` to which the piece may legally move. Requires pseudo-legal targets.
    FieldSet getLegalFields(const PieceTargets& piece, FieldSet fields) const {
        return piece.type == KING ? pins.getSafeFields(fields)
                                  : fields & pins.getAllowedFields(piece.from);
    }

    Position& position;
    Variant& variant;                   // receives the line
    int alfa;                           // lower bound of the window; rises to the best score
    const int beta;                     // upper bound of the window
    const int depth;                    // plies from the entry of quiescence
    const PseudoLegalMoves moves;       // all moves
    const CheckersAndPins pins;         // for testing which of them are legal
    const bool isInCheckOriginally;     // whether the side to move is in check
    const bool isDeepestPly;            // whether no move is searched deeper
    const int material;                 // balance for the side to move, in thousandths of a pawn
    std::optional<CheckInfo> checkInfo; // set unless in check or at the deepest ply
    int numberOfLegalMoves = 0;         // tried or skipped
    Variant localVariant;               // score of the move tried last, and the line after it
};
