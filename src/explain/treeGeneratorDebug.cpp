#include "explain/treeGeneratorDebug.h"

#include "base/cppIoUtils.h"
#include "board/makeMove.h"
#include "notation/fen.h"
#include "notation/moveText.h"

#include <algorithm>
#include <iostream>
#include <utility>

namespace {

// Indentation of the reports of a node and of its moves, in blanks.
constexpr int INDENT_A_LEVEL = 4;
constexpr int NODE_INDENT = 5;
constexpr int MOVE_INDENT = 9;
constexpr int EVALUATION_INDENT = 10;

std::string blanks(int level, int indent) {
    return std::string(at(INDENT_A_LEVEL * level + indent), ' ');
}

void printNode(std::ostream& stream, const Node& node, int level) {
    const std::string indent = blanks(level, NODE_INDENT);
    stream << indent << "Node at depth: " << node.depth << '\n';
    stream << indent << "position fen: " << node.position << '\n';
    stream << indent << "variant so far: ";
    for (const Move& move : node.variantSoFar) {
        printMove(stream, move);
        stream << ' ';
    }
    stream << "\n\n";
}

void printMoveInfo(std::ostream& stream, const NodeMoveInfo& info, int level) {
    const std::string indent = blanks(level, MOVE_INDENT);
    stream << indent << "move ";
    printMove(stream, info.move);
    stream << (info.isQuiscence ? " (quiescence)" : "") << (info.lmfCut ? " lmfCut" : "")
           << (info.useTableEntryBool ? " useTableEntryBool" : "") << '\n';
    stream << indent << "(alpha, beta) = (" << info.alfa << ", " << info.beta << ")\n";
    stream << indent << "principalVariant: ";
    printVariant(stream, info.principalVariant);
    if (!info.evalInfo.empty()) {
        stream << indent << "Evaluation:\n"
               << indentString(INDENT_A_LEVEL * level + EVALUATION_INDENT, info.evalInfo);
    }
    stream << '\n';
}

bool isRemarkable(const NodeMoveInfo& info) {
    return info.principalVariant.evaluation > info.alfa || !info.evalInfo.empty();
}

} // namespace

Explain::Explain() : data(1) {
}

void Explain::setVariant(const Position& position, const Variant& _variant) {
    enabled = true;
    variant = _variant;
    positions[0] = position;
    for (int i = 0; i < variant.varLength; ++i) {
        positions[i + 1] = positionAfter(positions[i], variant.get(i).move);
    }
}

bool Explain::inVariant() const {
    return enabled && actualDepth - actualCommonDepth <= 1;
}

bool Explain::preciselyInVariant() const {
    return enabled && actualDepth == actualCommonDepth;
}

void Explain::doMove(const Move& move) {
    if (actualDepth == actualCommonDepth && actualCommonDepth < variant.varLength &&
        testMoveEquality(move, variant.get(actualCommonDepth).move)) {
        ++actualCommonDepth;
    }
    ++actualDepth;
    if (inVariant()) {
        beginRecord(move);
    }
}

void Explain::undoMove() {
    --actualDepth;
    actualCommonDepth = std::min(actualCommonDepth, actualDepth);
}

void Explain::explainTreeGenMove(int alfa, int beta, const Variant& localVariant, const Move& move,
                                 MoveEnding ending) {
    recordResult({.isQuiscence = false,
                  .lmfCut = isLmfCut(ending),
                  .useTableEntryBool = isFromTable(ending),
                  .ending = ending,
                  .alfa = alfa,
                  .beta = beta,
                  .principalVariant = localVariant,
                  .move = move,
                  .evalInfo = ""});
}

void Explain::explainQuiscenceMove(int alfa, int beta, const Variant& localVariant,
                                   const Move& move, MoveEnding ending) {
    recordResult({.isQuiscence = true,
                  .lmfCut = false,
                  .useTableEntryBool = false,
                  .ending = ending,
                  .alfa = alfa,
                  .beta = beta,
                  .principalVariant = localVariant,
                  .move = move,
                  .evalInfo = ""});
}

void Explain::explainEndTreePass(IdaNS::GeneratingResult result) {
    data.back().passResult = result;
    data.back().isFinished = true;
    data.emplace_back();
}

std::string& Explain::getLastString() {
    return getPresentNode().nodeMoveInfos.back().evalInfo;
}

void Explain::explainAll(bool all) const {
    explainAll(all, std::cout);
}

void Explain::explainAll(bool all, std::ostream& stream) const {
    for (std::size_t i = 0; i < data.size(); ++i) {
        explainPass(i, all, stream);
    }
}

void Explain::explainPass(std::size_t pass, bool all, std::ostream& stream) const {
    const TreeSearchPass& record = data[pass];
    if (!record.isFinished) {
        stream << " pass " << pass << " not finished \n";
        return;
    }
    stream << "  pass no. " << pass << ":\n"
           << "    result: " << record.passResult << '\n'
           << "  \t depth: " << record.nodes.size() << '\n';
    for (std::size_t depth = 0; depth < record.nodes.size(); ++depth) {
        const int level = static_cast<int>(depth);
        printNode(stream, record.nodes[depth], level);
        for (const NodeMoveInfo& info : record.nodes[depth].nodeMoveInfos) {
            if (all || isRemarkable(info)) {
                printMoveInfo(stream, info, level);
            }
        }
    }
}

// The node on the line at which the last move was tried.
Node& Explain::getPresentNode() {
    return data.back().nodes.at(at(actualDepth - 1));
}

// Starts a record of the last move, at its node.
void Explain::beginRecord(const Move& move) {
    const int depth = actualDepth - 1;
    std::vector<Node>& nodes = data.back().nodes;
    if (nodes.size() <= at(depth)) {
        nodes.resize(at(depth) + 1);
    }
    Node& node = nodes[at(depth)];
    node.depth = depth;
    node.position = getFen(positions[depth]);
    for (int i = static_cast<int>(node.variantSoFar.size()); i < depth; ++i) {
        node.variantSoFar.push_back(variant.get(i).move);
    }
    NodeMoveInfo info;
    info.move = move;
    node.nodeMoveInfos.push_back(info);
}

// Completes the record of the last move, if there is one, and takes the move back.
void Explain::recordResult(NodeMoveInfo result) {
    const bool hasNode = 0 < actualDepth && at(actualDepth) <= data.back().nodes.size();
    if (inVariant() && hasNode && !getPresentNode().nodeMoveInfos.empty()) {
        NodeMoveInfo& info = getPresentNode().nodeMoveInfos.back();
        result.evalInfo = std::move(info.evalInfo);
        info = std::move(result);
    }
    undoMove();
}
