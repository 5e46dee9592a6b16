#include "explain/watchedLine.h"

#include "board/makeMove.h"
#include "search/score.h"

#include <algorithm>

Verdict verdictOf(const NodeMoveInfo& info) {
    if (info.principalVariant.evaluation >= info.beta) {
        return Verdict::FAILED_HIGH;
    }
    return info.principalVariant.evaluation > info.alfa ? Verdict::INSIDE : Verdict::FAILED_LOW;
}

bool isBound(const NodeMoveInfo& info) {
    return verdictOf(info) != Verdict::INSIDE &&
           (info.ending == MoveEnding::SEARCHED || info.ending == MoveEnding::STAND_PAT);
}

const NodeMoveInfo* choiceOf(const Node& node) {
    const auto& infos = node.nodeMoveInfos;
    const auto choice = std::find_if(infos.rbegin(), infos.rend(), [](const NodeMoveInfo& info) {
        return !info.lmfCut && verdictOf(info) != Verdict::FAILED_LOW;
    });
    return choice != infos.rend() ? &*choice : nullptr;
}

WatchedLine::WatchedLine(const NumberedGame& game, const Explain& _explain,
                         const std::vector<PassReport>& _passes)
    : explain(_explain), passes(_passes), gamePly(game.ply), fen(getWholeFen(game)),
      positions(1, game.position) {
    const Variant& line = explain.getVariant();
    for (int i = 0; i < line.varLength; ++i) {
        moves.push_back(line.get(i).move);
        positions.push_back(positionAfter(positions.back(), moves.back()));
    }
}

int WatchedLine::getLastGoodPass() const {
    int pass = getPassCount() - 1;
    while (pass > 0 && !isGood(getPass(pass))) {
        --pass;
    }
    return pass;
}

const Node* WatchedLine::getNode(int pass, int ply) const {
    const std::vector<Node>& nodes = explain.getData()[at(pass)].nodes;
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
    const auto info = std::find_if(infos.begin(), infos.end(), [&](const NodeMoveInfo& candidate) {
        return isLineMove(candidate, ply);
    });
    return info != infos.end() ? &*info : nullptr;
}

const NodeMoveInfo* WatchedLine::getRefutation(int pass, int ply, const NodeMoveInfo& info) const {
    const Node* child = isLineMove(info, ply) ? getNode(pass, ply + 1) : nullptr;
    const bool isRefuted = !info.lmfCut && verdictOf(info) == Verdict::FAILED_LOW;
    return isRefuted && child != nullptr ? choiceOf(*child) : nullptr;
}

std::vector<const NodeMoveInfo*> WatchedLine::getRemarkable(int pass, int ply, bool all) const {
    std::vector<const NodeMoveInfo*> remarkable;
    for (const NodeMoveInfo& info : getNode(pass, ply)->nodeMoveInfos) {
        const bool hasCounted = !info.lmfCut && verdictOf(info) != Verdict::FAILED_LOW;
        if (all || hasCounted || isLineMove(info, ply)) {
            remarkable.push_back(&info);
        }
    }
    return remarkable;
}

bool WatchedLine::isLeftOut(int pass, int ply) const {
    return ply < getLength() && getLineMove(pass, ply) == nullptr;
}

std::optional<int> WatchedLine::getStandPat(int pass, int ply) const {
    const Node* node = getNode(pass, ply);
    if (ply == 0 || ply != getPass(pass).depth || node == nullptr) {
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
