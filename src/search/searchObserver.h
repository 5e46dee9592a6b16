// The seam through which a search can be watched, move by move. It is a template
// parameter of the search: the engine that plays is built with NoObserver, of which
// the compiler leaves nothing.
#pragma once

struct Move;
struct Variant;

namespace IdaNS {
enum GeneratingResult : int; // see ida.h
}

// Is told of everything that a search does. Every doMove() is followed by exactly one
// of the two explain calls for a move, or by the end of an abandoned search.
class SearchObserver {
public:
    // The search has made `move`.
    virtual void doMove(const Move& move) = 0;
    // The tree search has finished the move made last and taken it back. `alfa` and
    // `beta` are the node's window when it was tried, `localVariant` the score and the
    // line behind it; the flags say that lmf cut it, or that the table answered.
    virtual void explainTreeGenMove(int alfa, int beta, const Variant& localVariant,
                                    const Move& move, bool lmfCut, bool useTableEntryBool) = 0;
    // The same for the quiescence search.
    virtual void explainQuiscenceMove(int alfa, int beta, const Variant& localVariant,
                                      const Move& move) = 0;
    // A pass has ended.
    virtual void explainEndTreePass(IdaNS::GeneratingResult result) = 0;

protected:
    ~SearchObserver() = default;
};

// Nobody watches.
struct NoObserver {
    void doMove(const Move& /*move*/) const {}
    void explainTreeGenMove(int /*alfa*/, int /*beta*/, const Variant& /*localVariant*/,
                            const Move& /*move*/, bool /*lmfCut*/,
                            bool /*useTableEntryBool*/) const {}
    void explainQuiscenceMove(int /*alfa*/, int /*beta*/, const Variant& /*localVariant*/,
                              const Move& /*move*/) const {}
    void explainEndTreePass(IdaNS::GeneratingResult /*result*/) const {}
};

// Hands everything on to the one who watches, who must be set before the search.
struct ObservedBy {
    void doMove(const Move& move) const { observer->doMove(move); }
    void explainTreeGenMove(int alfa, int beta, const Variant& localVariant, const Move& move,
                            bool lmfCut, bool useTableEntryBool) const {
        observer->explainTreeGenMove(alfa, beta, localVariant, move, lmfCut, useTableEntryBool);
    }
    void explainQuiscenceMove(int alfa, int beta, const Variant& localVariant,
                              const Move& move) const {
        observer->explainQuiscenceMove(alfa, beta, localVariant, move);
    }
    void explainEndTreePass(IdaNS::GeneratingResult result) const {
        observer->explainEndTreePass(result);
    }

    SearchObserver* observer = nullptr; // not owned
};
