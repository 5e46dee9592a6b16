// What became of a watched line in each pass of a search, worked out from the record of
// Explain: where the line was left, and why the search looked no further.
#pragma once

#include "explain/passSearch.h"
#include "explain/treeGeneratorDebug.h"
#include "notation/numberedGame.h"

#include <optional>
#include <string>
#include <vector>

// Where a move's score lay in its node's window.
enum class Verdict { FAILED_LOW, INSIDE, FAILED_HIGH };

Verdict verdictOf(const NodeMoveInfo& info);

// Whether the score of a record is only a bound: the search stops at the first refutation,
// and does not learn how bad a move is.
bool isBound(const NodeMoveInfo& info);

// The move whose score the node took: the one that cut it off, or the last that raised
// alfa. Null if there is none. lmf's moves have no score.
const NodeMoveInfo* choiceOf(const Node& node);

// How far a pass followed the line.
struct Fate {
    enum Kind {
        FOLLOWED,    // every move of the line was its node's choice
        LEFT,        // at `node`, the line's move was tried but not chosen
        NOT_REACHED, // at `node`, another move cut the node off before
        CUT_SHORT,   // up to `node` all were chosen, but that node tried no move
    };
    Kind kind;
    int node;                     // plies from the root
    const NodeMoveInfo* lineMove; // at `node` if LEFT, at the node before if CUT_SHORT
    const NodeMoveInfo* choice;   // at `node`; null if there is none

    bool isLike(const Fate& other) const { return kind == other.kind && node == other.node; }
};

// A line with the record of a search that Explain watched it in, and the reports of its passes,
// of which there is at least one. Everything handed in must outlive the object.
class WatchedLine {
public:
    WatchedLine(const NumberedGame& game, const Explain& _explain,
                const std::vector<PassReport>& _passes);

    int getLength() const { return static_cast<int>(moves.size()); }
    const std::vector<Move>& getMoves() const { return moves; }
    // The position after `ply` moves of the line.
    const Position& getPosition(int ply) const { return positions[at(ply)]; }

    // The half moves of the game before node `ply`, for the number of a move.
    int getGamePly(int ply) const { return gamePly + ply; }
    // The position of the root in FEN.
    const std::string& getFen() const { return fen; }

    // The passes that have ended. None of the queries below takes another one.
    int getPassCount() const { return static_cast<int>(passes.size()); }
    const PassReport& getPass(int pass) const { return passes[at(pass)]; }
    // The last one that gave more than a bound. The first pass always does.
    int getLastGoodPass() const;
    // The node of the line `ply` plies from the root, null if the pass tried no move there.
    const Node* getNode(int pass, int ply) const;

    // The record of the line's own move at a node, null if it was not tried.
    const NodeMoveInfo* getLineMove(int pass, int ply) const;
    // Whether a record at a node is that of the line's move.
    bool isLineMove(const NodeMoveInfo& info, int ply) const;
    // The move that refuted the line's move, if `info` is its record at node `ply` and it
    // failed low; null if it is not, or there is none.
    const NodeMoveInfo* getRefutation(int pass, int ply, const NodeMoveInfo& info) const;
    // The moves tried at a node that are worth showing: the line's own, and those that raised
    // alfa or cut the node off. With `all`, every one. The node must be there.
    std::vector<const NodeMoveInfo*> getRemarkable(int pass, int ply, bool all) const;
    // Whether the line has a move at a node that the pass did not try. Requires that it tried
    // the one before.
    bool isLeftOut(int pass, int ply) const;

    // The score that standing pat gave the node before any move, for the side to move, if
    // it raised alfa.
    std::optional<int> getStandPat(int pass, int ply) const;

    Fate getFate(int pass) const;
    // The node below a left one at which the line's next move was not even tried because
    // another one cut the node off, or nothing.
    std::optional<int> getUnreachedNode(int pass, int leftNode) const;

private:
    const Explain& explain;
    const std::vector<PassReport>& passes;
    int gamePly; // before the root
    std::string fen;
    std::vector<Move> moves;
    std::vector<Position> positions; // one more than moves
};
