// The nodes of the tree search, down to the leaves, where quiescence takes over.
//
// Every score of a node is for the side to move there, in thousandths of a pawn. `alfa` and `beta`
// are the node's window. The search is fail-hard, except for mates and draws.
#pragma once

#include "board/position.h"
#include "search/moveEnding.h"
#include "search/quiscence.h"
#include "search/searchObserver.h"
#include "search/searchState.h"
#include "search/variant.h"

struct TreeNode;

// The interface of TreeSearch, whatever its observer.
class NodeSearch {
public:
    NodeSearch() = default;
    NodeSearch(const NodeSearch&) = delete;
    NodeSearch& operator=(const NodeSearch&) = delete;
    virtual ~NodeSearch() = default;

    // Searches one node, `depth` plies below the root. Stores score and line in `outputVar`: a move
    // that raises alfa and stays below beta replaces the line, a score at beta and a draw by the
    // half-move clock empty it, and otherwise the line stays. Returns how the move into `position`
    // ended. If the pass is abandoned, none of this is meaningful.
    virtual MoveEnding generateTreeRek(Position& position, Variant& outputVar, int alfa, int beta,
                                       int depth) = 0;
    // Calls Quiscence::quiscenceSearchInner().
    virtual MoveEnding quiscenceSearchInner(Position& position, int alfa, int beta,
                                            Variant& variant) = 0;
};

// For `Observer` see searchObserver.h.
template <class Observer> class TreeSearch final : public NodeSearch {
public:
    // `_state` must outlive the object.
    TreeSearch(SearchState& _state, Observer _observer)
        : state(_state), quiscence(_state, _observer), observer(_observer) {}

    MoveEnding generateTreeRek(Position& position, Variant& outputVar, int alfa, int beta,
                               int depth) override;
    MoveEnding quiscenceSearchInner(Position& position, int alfa, int beta,
                                    Variant& variant) override {
        return quiscence.quiscenceSearchInner(position, alfa, beta, variant);
    }

private:
    // False if the node is over: the move reached beta, or the pass is abandoned.
    bool tryMove(TreeNode& node, const Move& move);
    MoveEnding scoreMove(TreeNode& node);
    MoveEnding searchMove(TreeNode& node);
    bool takeScore(TreeNode& node, const Move& move, MoveEnding ending);

    SearchState& state;
    Quiscence<Observer> quiscence;
    [[no_unique_address]] Observer observer;
};

extern template class TreeSearch<NoObserver>;
extern template class TreeSearch<CountedBy>;
extern template class TreeSearch<ObservedBy>;
