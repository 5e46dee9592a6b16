// The quiescence search: settles captures, promotions and checks below the tree.
//
// Every score of a node is for the side to move there, in thousandths of a pawn. The search
// is fail-hard alpha-beta; `alfa` and `beta` are the node's window.
#pragma once

#include "board/position.h"
#include "board/pseudoLegalMoves.h"
#include "search/moveEnding.h"
#include "search/searchObserver.h"
#include "search/searchState.h"
#include "search/variant.h"

struct QuiscenceNode;
class QuietCount;

// `Observer` is told of every move; see searchObserver.h.
template <class Observer> class Quiscence {
public:
    // `_state` must outlive the object.
    Quiscence(SearchState& _state, Observer _observer) : state(_state), observer(_observer) {}

    // The search as the tree calls it: leaves score and line in `variant`, and tells what
    // became of the move into `position`. In an abandoned search neither means anything.
    MoveEnding quiscenceSearchInner(Position& position, int alfa, int beta, Variant& variant);

    // One node, `depth` plies below the entry. A move that raises `alfa` and stays below
    // `beta` makes the line; otherwise it stays as it was given.
    MoveEnding quiscenceSearchRek(Position& position, Variant& variant, int alfa, int beta,
                                  int depth);

private:
    // What follows when a move has been tried.
    enum class Next { MOVE, CUT_OFF, ABANDON };

    Next tryCaptures(QuiscenceNode& node);
    Next tryQuietMoves(QuiscenceNode& node);
    Next tryQuietMovesOf(QuiscenceNode& node, EntrySet entries, const QuietCount& quietCount);
    Next tryMove(QuiscenceNode& node, const Move& move);
    // Parts of tryMove(): a move that is tried gets one frame of the machine, not three.
    [[gnu::always_inline]] inline MoveEnding scoreQuiscenceMove(QuiscenceNode& node,
                                                                const Move& move);
    [[gnu::always_inline]] inline MoveEnding searchMove(QuiscenceNode& node, const Move& move);

    SearchState& state;
    [[no_unique_address]] Observer observer;
};

extern template class Quiscence<NoObserver>;
extern template class Quiscence<ObservedBy>;
