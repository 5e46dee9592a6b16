// Records, pass by pass, every move that a search tried at the nodes along a given line, to show
// why it did not follow that line.
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
    bool lmfCut = false;            // passed over by lmf
    bool useTableEntryBool = false; // scored by the table
    MoveEnding ending = MoveEnding::SEARCHED;
    int alfa = 0;             // the node's window when the move was tried, for the
    int beta = 0;             // side that makes it
    Variant principalVariant; // the score for that side, and the line after the move
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
    static constexpr int POSITION_LENGTH = 20;
    // Most moves of a watched line, as one more position than moves is stored.
    static constexpr int MAX_LINE = POSITION_LENGTH - 1;

    Explain();

    // Watches `_variant`, a legal line from `position` of at most MAX_LINE moves.
    // Before this call nothing is recorded.
    void setVariant(const Position& position, const Variant& _variant);

    // Whether the search's current path lies on the line, or is one move off it.
    bool inVariant() const;
    // Whether it lies on the line.
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
    // Prints one pass of it. Requires pass < getData().size().
    void explainPass(std::size_t pass, bool all, std::ostream& stream) const;

    // The passes so far; the last one is not finished.
    const std::vector<TreeSearchPass>& getData() const { return data; }
    const Variant& getVariant() const { return variant; }

private:
    Node& getPresentNode();
    void beginRecord(const Move& move);
    void recordResult(NodeMoveInfo result);

    Indexed<int, Position, POSITION_LENGTH> positions; // by number of moves of the line played
    Variant variant;                                   // the watched line
    int actualCommonDepth = 0; // moves that the current path shares with the line
    int actualDepth = 0;       // moves of the current path
    std::vector<TreeSearchPass> data;
    bool enabled = false; // whether a line is watched
};
