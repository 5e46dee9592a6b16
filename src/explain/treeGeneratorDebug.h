// Why did the search not follow this line? Explain watches a search and records, pass
// by pass, every move that it tried at the nodes along a given line.
#pragma once

#include "board/position.h"
#include "search/searchObserver.h"
#include "search/variant.h"

#include <iosfwd>
#include <string>
#include <vector>

// One move tried at a node.
struct NodeMoveInfo {
    bool isQuiscence = false;       // tried in the quiescence search
    bool lmfCut = false;            // passed over by lmf
    bool useTableEntryBool = false; // answered by the table
    MoveEnding ending = MoveEnding::SEARCHED;
    int alfa = 0;             // the node's window when it was tried, for the side
    int beta = 0;             //   that makes the move
    Variant principalVariant; // score for that side, and the line after the move
    Move move;
    std::string evalInfo; // free text on the evaluation, empty unless a caller writes it
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
    IdaNS::GeneratingResult passResult = IdaNS::OK; // how it ended, if it has
    bool isFinished = false;
    std::vector<Node> nodes; // by depth
};

class Explain final : public SearchObserver {
public:
    static constexpr int POSITION_LENGTH = 20;
    // Most moves of a watched line: each needs the position before it, and the last one
    // the position after it as well.
    static constexpr int MAX_LINE = POSITION_LENGTH - 1;

    Explain();

    // Watches `_variant`, a legal line from `position` of at most MAX_LINE moves.
    // Before this call nothing is recorded.
    void setVariant(const Position& position, const Variant& _variant);

    // Whether the search's present path lies on the line, or is one move off it.
    bool inVariant() const;
    // Whether it lies on the line.
    bool preciselyInVariant() const;

    void doMove(const Move& move) override;
    // The search has taken a move back. The explain calls below do this themselves.
    void undoMove();
    void explainTreeGenMove(int alfa, int beta, const Variant& localVariant, const Move& move,
                            MoveEnding ending) override;
    void explainQuiscenceMove(int alfa, int beta, const Variant& localVariant, const Move& move,
                              MoveEnding ending) override;
    void explainEndTreePass(IdaNS::GeneratingResult result) override;

    // evalInfo of the newest record at the present depth, for the caller to write to.
    // Requires that the move made last was recorded.
    std::string& getLastString();

    // Prints the record: of the moves only those that raised alfa or have an evalInfo,
    // or all of them.
    void explainAll(bool all) const; // on standard output
    void explainAll(bool all, std::ostream& stream) const;
    // Prints one pass of it. Requires pass < getData().size().
    void explainPass(std::size_t pass, bool all, std::ostream& stream) const;

    // The passes so far; the last one is under way.
    const std::vector<TreeSearchPass>& getData() const { return data; }
    const Variant& getVariant() const { return variant; }

private:
    Node& getPresentNode();
    void beginRecord(const Move& move);
    void recordResult(NodeMoveInfo result);

    Indexed<int, Position, POSITION_LENGTH> positions; // after so many moves of the line
    Variant variant;                                   // the watched line
    int actualCommonDepth = 0; // moves that the present path shares with the line
    int actualDepth = 0;       // moves of the present path
    std::vector<TreeSearchPass> data;
    bool enabled = false; // whether a line is watched
};
