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

    // Of `fields`, pseudo-legal targets of a piece, those that are legal.
    FieldSet getLegalFields(const PieceTargets& piece, FieldSet fields) const {
        return piece.type == KING ? pins.getSafeFields(fields)
                                  : fields & pins.getAllowedFields(piece.from);
    }

    Position& position;
    Variant& variant; // gets the line
    int alfa;         // the best score so far
    const int beta;
    const int depth;                    // plies below the entry
    const PseudoLegalMoves moves;       // all moves
    const CheckersAndPins pins;         // which of them are legal
    const bool isInCheckOriginally;     // before the moves
    const bool isDeepestPly;            // nothing is searched further
    const int material;                 // balance for the side to move
    std::optional<CheckInfo> checkInfo; // set unless in check or at the deepest ply
    int numberOfLegalMoves = 0;         // tried or skipped
    Variant localVariant;               // score of the move tried last, and the line after it
};
