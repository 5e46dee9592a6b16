// The interface through which a search reports every move. The recursive routines take the type of
// the observer as a template parameter, so that an unobserved search costs nothing extra.
#pragma once

#include "search/moveEnding.h"
#include "search/statistics.h"

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

// Receives every move and every pass of a search. Every doMove() is followed by exactly one
// explainTreeGenMove() or explainQuiscenceMove() for the same move, unless the pass is abandoned.
class SearchObserver {
public:
    // The search is about to try `move`.
    virtual void doMove(const Move& move) = 0;
    // The tree search has scored `move` and taken it back. `alfa` and `beta` are the node's window
    // when the move was tried. `localVariant` has its score, for the side that made it, and the
    // line after it. `ending` is how it was scored.
    virtual void explainTreeGenMove(int alfa, int beta, const Variant& localVariant,
                                    const Move& move, MoveEnding ending) = 0;
    // The same for the quiescence search.
    virtual void explainQuiscenceMove(int alfa, int beta, const Variant& localVariant,
                                      const Move& move, MoveEnding ending) = 0;
    // A pass has ended. Not called for an abandoned pass.
    virtual void explainEndTreePass(IdaNS::GeneratingResult result) = 0;

protected:
    ~SearchObserver() = default;
};

// ---- The types that the recursive routines take as `Observer` ----

// Observes nothing. The compiler removes all its calls.
struct NoObserver {
    static constexpr bool IS_WATCHING = false; // whether moves are reported
    static constexpr bool IS_COUNTING = false; // whether count() has an effect

    void doMove(const Move& /*move*/) const {}
    void explainTreeGenMove(int /*alfa*/, int /*beta*/, const Variant& /*localVariant*/,
                            const Move& /*move*/, MoveEnding /*ending*/) const {}
    void explainQuiscenceMove(int /*alfa*/, int /*beta*/, const Variant& /*localVariant*/,
                              const Move& /*move*/, MoveEnding /*ending*/) const {}
    // Adds to a counter of `type` at `ply`; see TestStatistics.
    void count(int /*type*/, int /*ply*/, int /*increment*/) const {}
};

// Counts in `statistics`, which is not owned.
struct CountedBy : NoObserver {
    static constexpr bool IS_COUNTING = true;

    void count(int type, int ply, int increment) const {
        statistics->incrementStatistic(type, ply, increment);
    }

    TestStatistics* statistics;
};

// Reports to `observer`, which is not owned.
struct ObservedBy {
    static constexpr bool IS_WATCHING = true;
    static constexpr bool IS_COUNTING = false;

    void doMove(const Move& move) const { observer->doMove(move); }
    void explainTreeGenMove(int alfa, int beta, const Variant& localVariant, const Move& move,
                            MoveEnding ending) const {
        observer->explainTreeGenMove(alfa, beta, localVariant, move, ending);
    }
    void explainQuiscenceMove(int alfa, int beta, const Variant& localVariant, const Move& move,
                              MoveEnding ending) const {
        observer->explainQuiscenceMove(alfa, beta, localVariant, move, ending);
    }
    void count(int /*type*/, int /*ply*/, int /*increment*/) const {}

    SearchObserver* observer;
};
