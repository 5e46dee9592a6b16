#include "kestran-explain/watchedLine.h"

#include "board/boardRepresentationUtils.h"
#include "board/moveGenerator.h"
#include "search/evaluation.h"
#include "search/quiscence.h"
#include "search/treeGenerator.h"
#include "support/san.h"

#include <algorithm>

namespace {

int staticScore(const Position& position) {
    const int material = basicPositionEvaluationByMaterial(position);
    return material + positionalEval(position, material);
}

// Whether the side to move after a move with this window stands pat at once.
bool standsPat(const EngineConfig& config, Position& after, const NodeMoveInfo& info) {
    return config._new_feature_quiscence_optimization && !isInCheck(after) &&
           -staticScore(after) >= closerToCheckMate(-info.alfa);
}

// What ends a node before or without any move.
Ending nodeEnding(Position& position) {
    if (position.halfMoveClock >= MAX_HALF_MOVE_CLOCK) {
        return Ending::CLOCK;
    }
    MoveArray moves;
    if (generateLegalMoves(position, moves.data()) > 0) {
        return Ending::SEARCHED;
    }
    return isInCheck(position) ? Ending::MATE : Ending::STALEMATE;
}

} // namespace

Verdict verdictOf(const NodeMoveInfo& info) {
    if (info.principalVariant.evaluation >= info.beta) {
        return Verdict::FAILED_HIGH;
    }
    return info.principalVariant.evaluation > info.alfa ? Verdict::INSIDE : Verdict::FAILED_LOW;
}

const NodeMoveInfo* choiceOf(const Node& node) {
    const auto& infos = node.nodeMoveInfos;
    const auto choice = std::find_if(infos.rbegin(), infos.rend(), [](const NodeMoveInfo& info) {
        return !info.lmfCut && verdictOf(info) != Verdict::FAILED_LOW;
    });
    return choice != infos.rend() ? &*choice : nullptr;
}

WatchedLine::WatchedLine(const EngineConfig& _config, const Game& _game, const Explain& _explain)
    : config(_config), game(_game), explain(_explain), positions(1, _game.position) {
    const Variant& line = explain.getVariant();
    for (int i = 0; i < line.varLength; ++i) {
        moves.push_back(line.get(i).move);
        positions.push_back(positionAfter(positions.back(), moves.back()));
    }
    for (int pass = 0, depth = 1; pass < getPassCount(); ++pass) {
        passDepths.push_back(depth);
        depth += getPass(pass).passResult == IdaNS::OK ? 1 : 0;
    }
}

const Node* WatchedLine::getNode(int pass, int ply) const {
    const std::vector<Node>& nodes = getPass(pass).nodes;
    return at(ply) < nodes.size() ? &nodes[at(ply)] : nullptr;
}

bool WatchedLine::isLineMove(const NodeMoveInfo& info, int ply) const {
    return ply < getLength() && testMoveEquality(info.move, moves[at(ply)]);
}

const NodeMoveInfo* WatchedLine::getLineMove(int pass, int ply) const {
    const Node* node = getNode(pass, ply);
    if (node == nullptr) {
        return nullptr;
    }
    const auto& infos = node->nodeMoveInfos;
    const auto info = std::ranges::find_if(
        infos, [&](const NodeMoveInfo& candidate) { return isLineMove(candidate, ply); });
    return info != infos.end() ? &*info : nullptr;
}

// Whether the position after a move from node `ply` stood on the board or on the path.
bool WatchedLine::isRepetition(int ply, const Position& after) const {
    const auto path = positions.begin() + 1;
    return std::ranges::count(game.repetitionHashes, after.hash) > 0 ||
           std::any_of(path, path + ply,
                       [&](const Position& position) { return position.hash == after.hash; });
}

Ending WatchedLine::getEnding(int pass, int ply, const NodeMoveInfo& info) const {
    Position after = positionAfter(positions[at(ply)], info.move);
    if (isRepetition(ply, after)) {
        return Ending::REPETITION;
    }
    if (info.isQuiscence) {
        return getQuiscenceEnding(pass, ply, info, after);
    }
    if (info.lmfCut) {
        return Ending::LMF;
    }
    if (info.useTableEntryBool) {
        return Ending::TABLE;
    }
    if (ply + 1 == getPassDepth(pass) && standsPat(config, after, info)) {
        return Ending::STANDS_PAT;
    }
    return nodeEnding(after);
}

Ending WatchedLine::getQuiscenceEnding(int pass, int ply, const NodeMoveInfo& info,
                                       Position& after) const {
    Position before = positions[at(ply)];
    if (!isInCheck(before) && !isMoveInteresting(after, info.move)) {
        return Ending::STATIC_QUIET;
    }
    if (ply - getPassDepth(pass) >= config.quiscenceMaxDepth - 1) {
        return Ending::STATIC_DEEPEST;
    }
    const std::int64_t reach =
        std::int64_t{config.quiscenceDeltaWindow} + basicPositionEvaluationByMaterial(after);
    if (reach < info.alfa && !isInCheck(before) && !isInCheck(after)) {
        return Ending::DELTA;
    }
    return nodeEnding(after);
}

bool WatchedLine::isBound(int pass, int ply, const NodeMoveInfo& info) const {
    const Ending ending = getEnding(pass, ply, info);
    return verdictOf(info) != Verdict::INSIDE &&
           (ending == Ending::SEARCHED || ending == Ending::STANDS_PAT);
}

std::optional<int> WatchedLine::getStandPat(int pass, int ply) const {
    const Node* node = getNode(pass, ply);
    if (ply == 0 || ply != getPassDepth(pass) || node == nullptr) {
        return std::nullopt;
    }
    const int alfa = node->nodeMoveInfos.front().alfa;
    const NodeMoveInfo& before = *getLineMove(pass, ply - 1);
    return alfa != closerToCheckMate(-before.beta) ? std::optional(alfa) : std::nullopt;
}

Fate WatchedLine::getFate(int pass) const {
    const NodeMoveInfo* before = nullptr;
    for (int ply = 0; ply < getLength(); ++ply) {
        const Node* node = getNode(pass, ply);
        if (node == nullptr) {
            return {Fate::CUT_SHORT, ply, before, nullptr};
        }
        const NodeMoveInfo* lineMove = getLineMove(pass, ply);
        const NodeMoveInfo* choice = choiceOf(*node);
        if (lineMove == nullptr) {
            return {Fate::NOT_REACHED, ply, nullptr, choice};
        }
        if (lineMove != choice) {
            return {Fate::LEFT, ply, lineMove, choice};
        }
        before = lineMove;
    }
    return {Fate::FOLLOWED, getLength(), before, before};
}

std::optional<int> WatchedLine::getUnreachedNode(int pass, int leftNode) const {
    for (int ply = leftNode + 1; ply < getLength() && getNode(pass, ply) != nullptr; ++ply) {
        if (getLineMove(pass, ply) == nullptr) {
            return ply;
        }
    }
    return std::nullopt;
}
