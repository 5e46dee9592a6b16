#include "kestran-explain/lineAnswer.h"

#include "kestran-explain/searchText.h"
#include "search/score.h"
#include "support/san.h"

#include <memory>
#include <optional>

namespace {

// The line's own move at a node.
std::string moveText(const WatchedLine& line, int ply) {
    return toNumberedSan(line.getPosition(ply), line.getMoves()[at(ply)], line.getGamePly(ply));
}

std::string moveText(const WatchedLine& line, int ply, const NodeMoveInfo& info) {
    return toNumberedSan(line.getPosition(ply), info.move, line.getGamePly(ply));
}

std::string nodeText(const WatchedLine& line, int ply) {
    if (ply == 0) {
        return "at the root";
    }
    const std::span<const Move> path(line.getMoves().data(), at(ply));
    return "at node " + std::to_string(ply) + ", after " +
           lineToSan(line.getPosition(0), path, line.getGamePly(0));
}

// A score for the side that moved, and the line after the move.
struct Worth {
    int score;
    std::vector<Move> behind;
};

// The search that is asked, beside the record of the one that is explained.
struct Inquiry {
    const EngineConfig& config;
    const Game& game;
    const WatchedLine& line;
    SearchLimit& limit;
};

// What the line's move at node `ply` is worth in a search of its own, as deep as the search of
// the pass went. Nothing if there was no time for it.
std::optional<Worth> searchAlone(const Inquiry& inquiry, int pass, int ply) {
    const WatchedLine& line = inquiry.line;
    const auto ida = makeSearch(inquiry.config);
    Game path = inquiry.game;
    path.position = line.getPosition(ply + 1);
    for (int i = 1; i <= ply + 1; ++i) {
        path.repetitionHashes.push_back(line.getPosition(i).incremental.hash);
    }
    Variant variant;
    const int depth = line.getPass(pass).depth - 1 - ply;
    if (depth > 0) {
        const auto passes = searchPasses(*ida, path, depth, &inquiry.limit.begin(1.0));
        const bool isWhole =
            !passes.empty() && isGood(passes.back()) &&
            (passes.back().depth == depth || passes.back().result == IdaNS::OK_FINISH);
        if (!isWhole) {
            return std::nullopt;
        }
        variant = passes.back().line;
    } else {
        SearchRequest request;
        request.game = path;
        ida->prepareSearch(request, nullptr);
        ida->getTreeGenerator().quiscenceSearch(path.position, DEFAULT_FIRST_ALFA,
                                                DEFAULT_FIRST_BETA, variant);
    }
    return Worth{furtherFromCheckMate(-variant.evaluation), movesOf(variant)};
}

// How much less than the chosen move another one is worth.
std::string marginText(int chosen, int score) {
    if (chosen == score) {
        return ", the same, which is not enough to replace it";
    }
    if (isMate(chosen) || isMate(score)) {
        return "";
    }
    std::string size = scoreText(chosen > score ? chosen - score : score - chosen).substr(1);
    size = size == "0.00" ? "under 0.01" : size;
    return chosen > score ? ", " + size + " less"
                          : ", " + size + " more, which window, table or lmf kept out of sight";
}

// What became of the line's move at the node where it was left.
std::string lostMoveText(const Inquiry& inquiry, int pass, const Fate& fate, int chosenScore) {
    const WatchedLine& line = inquiry.line;
    const NodeMoveInfo& info = *fate.lineMove;
    const MoveEnding ending = info.ending;
    std::string text =
        moveText(line, fate.node) + " (" + endingText(ending, verdictOf(info)) + ") is worth ";
    Worth worth = {info.principalVariant.evaluation, movesOf(info.principalVariant)};
    if (isBound(info) || isLmfCut(ending)) {
        if (info.isQuiscence) {
            return text + "no more than that";
        }
        const std::optional<Worth> alone = searchAlone(inquiry, pass, fate.node);
        if (!alone) {
            return text + "an amount that there was no time to search for";
        }
        worth = *alone;
        text += scoreText(worth.score) + " when searched on its own";
    } else {
        text += scoreText(worth.score);
    }
    if (!worth.behind.empty()) {
        text += " (" +
                lineToSan(line.getPosition(fate.node + 1), worth.behind,
                          line.getGamePly(fate.node + 1)) +
                ")";
    }
    return text + marginText(chosenScore, worth.score);
}

// The first of the good passes up to the last one that ended the line at the same place.
int findFirstLike(const WatchedLine& line, int last, const Fate& fate) {
    int first = last;
    for (int pass = last; pass >= 0; --pass) {
        if (!isGood(line.getPass(pass))) {
            continue;
        }
        if (!line.getFate(pass).isLike(fate)) {
            break;
        }
        first = pass;
    }
    return first;
}

std::string leftText(const Inquiry& inquiry, int pass, const Fate& fate) {
    const WatchedLine& line = inquiry.line;
    const std::string move = moveText(line, fate.node);
    std::string text = nodeText(line, fate.node) + ": instead of " + move + " it ";
    int chosenScore = fate.lineMove->alfa;
    if (fate.choice != nullptr) {
        chosenScore = fate.choice->principalVariant.evaluation;
        text += "chose " + moveText(line, fate.node, *fate.choice) + ", worth ";
    } else {
        text += "stood pat, at ";
    }
    text += scoreText(chosenScore) + sideText(line.getPosition(fate.node)) + "; " +
            lostMoveText(inquiry, pass, fate, chosenScore);
    if (const auto node = line.getUnreachedNode(pass, fate.node)) {
        text += "; " + moveText(line, *node) + " was never reached, as " +
                moveText(line, *node, *choiceOf(*line.getNode(pass, *node))) + " cut off node " +
                std::to_string(*node);
    }
    return text;
}

std::string cutShortText(const WatchedLine& line, const Fate& fate) {
    const int last = fate.node - 1;
    return "as far as " + moveText(line, last) + ", worth " + scoreText(*fate.lineMove) +
           sideText(line.getPosition(last)) + ", and looked no further (" +
           endingText(fate.lineMove->ending) + "), so that " + moveText(line, fate.node) +
           " was not tried";
}

} // namespace

std::string answerInWords(const EngineConfig& config, const Game& game, const WatchedLine& line,
                          SearchLimit& limit) {
    const int pass = line.getLastGoodPass();
    const Fate fate = line.getFate(pass);
    const int first = findFirstLike(line, pass, fate);
    std::string when = " in " + passText(line, pass) + ", the last";
    when += pass + 1 < line.getPassCount() ? " good one" : "";
    if (first != pass) {
        when += ", as in every good one since " + passText(line, first);
    }
    when += ", ";
    switch (fate.kind) {
    case Fate::FOLLOWED:
        return "The search followed the line to its end" + when + "with " +
               lineText(line, 0, *choiceOf(*line.getNode(pass, 0))) + ", worth " +
               scoreText(*line.getLineMove(pass, 0)) + sideText(line.getPosition(0)) + ".";
    case Fate::LEFT:
        return "The search left the line" + when +
               leftText({config, game, line, limit}, pass, fate) + ".";
    case Fate::NOT_REACHED:
        return "The search never reached " + moveText(line, fate.node) + when +
               nodeText(line, fate.node) + ", as " + moveText(line, fate.node, *fate.choice) +
               " cut the node off at ply " + std::to_string(fate.node) + ".";
    case Fate::CUT_SHORT:
        if (fate.node == 0) {
            return "The search tried no move" + when +
                   "as the position is a draw by the half-move clock.";
        }
        return "The search followed the line" + when + cutShortText(line, fate) + ".";
    }
    return "";
}
