// The quiescence search: follows captures, promotions and checks below the tree.
//
// Every score of a node is for the side to move there, in thousandths of a pawn. `alfa` and `beta`
// are the node's window. The search is fail-hard, except for mates, draws and the static scores at
// the entry.
#pragma once

#include "board/position.h"
#include "board/pseudoLegalMoves.h"
#include "search/moveEnding.h"
#include "search/searchObserver.h"
#include "search/searchState.h"
#include "search/variant.h"

struct QuiscenceNode;
class QuietSkipper;

// For `Observer` see searchObserver.h.
template <class Observer> class Quiscence {
public:
    // `_state` must outlive the object.
    Quiscence(SearchState& _state, Observer _observer) : state(_state), observer(_observer) {}

    // Searches a leaf of the tree. Stores score and line in `variant` and returns how the move into
    // `position` ended. In an abandoned pass neither is meaningful.
    MoveEnding quiscenceSearchInner(Position& position, int alfa, int beta, Variant& variant);

    // Searches one node, `depth` plies below the entry. A move that raises alfa and stays below
    // beta replaces the line; a score at beta and a draw by the half-move clock empty it.
    MoveEnding quiscenceSearchRek(Position& position, Variant& variant, int alfa, int beta,
                                  int depth);

private:
    // These return false if the node is over: a move reached beta, or the pass is abandoned.
    bool tryCaptures(QuiscenceNode& node);
    bool tryQuietMoves(QuiscenceNode& node);
    bool tryQuietMovesOf(QuiscenceNode& node, EntrySet entries, QuietSkipper& skipper);
    bool tryMove(QuiscenceNode& node, const Move& move);
    // Parts of tryMove(), inlined so that a move takes one stack frame instead of three.
    [[gnu::always_inline]] inline MoveEnding scoreQuiscenceMove(QuiscenceNode& node,
                                                                const Move& move);
    static MoveEnding endingAtDeepestPly(const QuiscenceNode& node, const Move& move);
    [[gnu::always_inline]] inline MoveEnding searchMove(QuiscenceNode& node, const Move& move);

    SearchState& state;
    [[no_unique_address]] Observer observer;
};

extern template class Quiscence<NoObserver>;
extern template class Quiscence<CountedBy>;
extern template class Quiscence<ObservedBy>;
