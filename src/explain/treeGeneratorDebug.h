// Records, pass by pass, every move that a search tried at the nodes along a given line, to show
// why the search did not prefer that line.
#pragma once

#include "board/position.h"
#include "search/searchObserver.h"
#include "search/variant.h"

#include <iosfwd>
#include <string>
#include <vector>

// One move tried at a node.
struct NodeMoveInfo {
    bool isQuiscence = false;       // in the quiescence search
    bool lmfCut = false;            // skipped because of lmf()
    bool useTableEntryBool = false; // scored by the table
    MoveEnding ending = MoveEnding::SEARCHED;
    // The node's window when the move was tried, for the side that makes the move.
    int alfa = 0;
    int beta = 0;
    Variant principalVariant; // the score for the same side, and the line after the move
    Move move;
    std::string evalInfo; // free text about the evaluation, written by a caller
};

// One node on the watched line.
struct Node {
    int depth = 0;                  // plies from the root
    std::vector<Move> variantSoFar; // the moves of the line that lead here
    std::string position;           // in FEN
    std::vector<NodeMoveInfo> nodeMoveInfos;
};

// One pass of the search.
struct TreeSearchPass {
    IdaNS::GeneratingResult passResult = IdaNS::OK; // valid if isFinished
    bool isFinished = false;
    std::vector<Node> nodes; // by depth
};

class Explain final : public SearchObserver {
public:
    static constexpr int POSITION_LENGTH = 20; // positions that can be stored
    // Most moves of a watched line. A line has one more position than moves.
    static constexpr int MAX_LINE = POSITION_LENGTH - 1;

    Explain();

    // Watches `_variant`, a legal line from `position` of at most MAX_LINE moves.
    // Before this call nothing is recorded.
    void setVariant(const Position& position, const Variant& _variant);

    // Whether the current path of the search lies on the line, except perhaps for its last move.
    bool inVariant() const;
    // Whether the whole path lies on the line.
    bool preciselyInVariant() const;

    void doMove(const Move& move) override;
    // Takes back the last move. The explain calls below do this themselves.
    void undoMove();
    void explainTreeGenMove(int alfa, int beta, const Variant& localVariant, const Move& move,
                            MoveEnding ending) override;
    void explainQuiscenceMove(int alfa, int beta, const Variant& localVariant, const Move& move,
                              MoveEnding ending) override;
    void explainEndTreePass(IdaNS::GeneratingResult result) override;

    // The evalInfo of the latest record at the current depth, for the caller to write to. Requires
    // that the last move was recorded.
    std::string& getLastString();

    // Prints the record: all moves, or only those that raised alfa or have an evalInfo.
    void explainAll(bool all) const; // on standard output
    void explainAll(bool all, std::ostream& stream) const;
    // Prints the record of one pass. Requires pass < getData().size().
    void explainPass(std::size_t pass, bool all, std::ostream& stream) const;

    // The passes so far; the last one is always unfinished.
    const std::vector<TreeSearchPass>& getData() const { return data; }
    const Variant& getVariant() const { return variant; }

private:
    Node& getPresentNode();
    void beginRecord(const Move& move);
    void recordResult(NodeMoveInfo result);

    Indexed<int, Position, POSITION_LENGTH> positions; // after 0, 1, 2, ... moves of the line
    Variant variant;                                   // the watched line
    int actualCommonDepth = 0; // moves that the current path shares with the line
    int actualDepth = 0;       // moves of the current path
    std::vector<TreeSearchPass> data;
    bool enabled = false; // whether a line is watched
};
