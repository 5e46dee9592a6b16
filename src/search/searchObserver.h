// The seam through which a search can be watched, move by move. Only the recursive routines
// have it as a template parameter: the engine that plays is built with NoObserver, of which
// the compiler leaves nothing.
#pragma once

#include "search/moveEnding.h"

struct Move;
struct Variant;

namespace IdaNS {

// The outcome of one pass.
enum GeneratingResult : int {
    FAILLOW = 0,   // the score is at or below firstAlpha: to be repeated
    FAILHIGH = 1,  // the score is at or above firstBeta: to be repeated
    OK = 2,        // the score lies inside the window: deepening goes on
    OK_FINISH = 3, // a mate or a book move: no deeper pass follows
};

} // namespace IdaNS

// Is told of everything that a search does. Every doMove() is followed by exactly one
// of the two explain calls for a move, unless the pass is abandoned.
class SearchObserver {
public:
    // The search is about to try `move`.
    virtual void doMove(const Move& move) = 0;
    // The tree search has finished the move made last and taken it back. `alfa` and
    // `beta` are the node's window when it was tried, `localVariant` the score and the
    // line after it; `ending` tells how it was scored.
    virtual void explainTreeGenMove(int alfa, int beta, const Variant& localVariant,
                                    const Move& move, MoveEnding ending) = 0;
    // The same for the quiescence search.
    virtual void explainQuiscenceMove(int alfa, int beta, const Variant& localVariant,
                                      const Move& move, MoveEnding ending) = 0;
    // A pass has ended. A pass that was abandoned has not.
    virtual void explainEndTreePass(IdaNS::GeneratingResult result) = 0;

protected:
    ~SearchObserver() = default;
};

// Nobody watches.
struct NoObserver {
    static constexpr bool IS_WATCHING = false;

    void doMove(const Move& /*move*/) const {}
    void explainTreeGenMove(int /*alfa*/, int /*beta*/, const Variant& /*localVariant*/,
                            const Move& /*move*/, MoveEnding /*ending*/) const {}
    void explainQuiscenceMove(int /*alfa*/, int /*beta*/, const Variant& /*localVariant*/,
                              const Move& /*move*/, MoveEnding /*ending*/) const {}
};

// Hands everything on to the one who watches, who is not owned.
struct ObservedBy {
    static constexpr bool IS_WATCHING = true;

    void doMove(const Move& move) const { observer->doMove(move); }
    void explainTreeGenMove(int alfa, int beta, const Variant& localVariant, const Move& move,
                            MoveEnding ending) const {
        observer->explainTreeGenMove(alfa, beta, localVariant, move, ending);
    }
    void explainQuiscenceMove(int alfa, int beta, const Variant& localVariant, const Move& move,
                              MoveEnding ending) const {
        observer->explainQuiscenceMove(alfa, beta, localVariant, move, ending);
    }

    SearchObserver* observer;
};
